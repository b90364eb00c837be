// Unpacks a cabinet on a thread of its own, a bounded number of bytes ahead of whoever writes them to the disk: the
// decoder's work and the kernel's overlap.
#pragma once

#include "platform/win32/setupapi/cabinet.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace win32 {

// Used from one thread; the cabinet is its own until it goes.
class ReadAhead {
public:
    // Begins with the first entry whose name `is_inside_name` accepts; the others are never unpacked.
    explicit ReadAhead(Cabinet& cabinet);
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // Gives the bytes of entries()[index] to `sink`, with Cabinet::read's results. In rising order; what is left out
    // was unpacked for nothing.
    [[nodiscard]] DWORD read(std::size_t index, EntrySink& sink);

    static constexpr std::size_t kMostBytesAhead = 1 << 20;

private:
    struct Piece {
        std::size_t index;
        std::vector<std::byte> bytes;
        bool last;
        DWORD error; // of the entry, in its last piece
    };
    class Sender;

    void run();
    // False: nobody wants it any more.
    bool send(Piece piece);
    Piece receive();

    Cabinet& cabinet_;
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::condition_variable room_;
    std::deque<Piece> pieces_;
    std::size_t bytes_ahead_ = 0;
    bool stopped_ = false;
    std::thread thread_; // none when the system gave us no thread: then read() unpacks by itself
};

} // namespace win32
