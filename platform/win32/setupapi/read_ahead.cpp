#include "platform/win32/setupapi/read_ahead.h"

#include "platform/win32/setupapi/entry_name.h"
#include "winbase.h"

#include <system_error>
#include <utility>

namespace win32 {

// Takes one entry's bytes from the decoder and sends them over.
class ReadAhead::Sender : public EntrySink {
public:
    Sender(ReadAhead& to, std::size_t index) : to_(to), index_(index) {}

    bool take(std::span<const std::byte> bytes) override
    {
        return to_.send({ index_, { bytes.begin(), bytes.end() }, false, NO_ERROR });
    }

private:
    ReadAhead& to_;
    const std::size_t index_;
};

ReadAhead::ReadAhead(Cabinet& cabinet) : cabinet_(cabinet)
{
    try {
        thread_ = std::thread(&ReadAhead::run, this);
    } catch (const std::system_error&) {
        // slower alone, and right
    }
}

ReadAhead::~ReadAhead()
{
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    room_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

DWORD ReadAhead::read(std::size_t index, EntrySink& sink)
{
    if (!thread_.joinable())
        return cabinet_.read(cabinet_.entries()[index], sink);
    for (;;) {
        const Piece piece = receive();
        if (piece.index < index)
            continue; // of an entry that was left out
        if (!piece.bytes.empty())
            (void)sink.take(piece.bytes); // one that is full drops the rest: the next entry comes behind it
        if (piece.last)
            return piece.error;
    }
}

void ReadAhead::run()
{
    const std::vector<CabinetEntry>& entries = cabinet_.entries();
    for (std::size_t i = 0; i < entries.size(); i++) {
        if (!is_inside_name(entries[i].name))
            continue;
        Sender sender(*this, i);
        const DWORD error = cabinet_.read(entries[i], sender);
        if (!send({ i, {}, true, error }))
            return;
    }
}

bool ReadAhead::send(Piece piece)
{
    std::unique_lock lock(mutex_);
    if (bytes_ahead_ >= kMostBytesAhead)
        room_.wait(lock, [&] { return stopped_ || bytes_ahead_ < kMostBytesAhead / 2; });
    if (stopped_)
        return false;
    bytes_ahead_ += piece.bytes.size();
    pieces_.push_back(std::move(piece));
    const bool awaited = pieces_.size() == 1;
    lock.unlock();
    if (awaited)
        arrived_.notify_one();
    return true;
}

ReadAhead::Piece ReadAhead::receive()
{
    std::unique_lock lock(mutex_);
    arrived_.wait(lock, [&] { return !pieces_.empty(); });
    Piece piece = std::move(pieces_.front());
    pieces_.pop_front();
    bytes_ahead_ -= piece.bytes.size();
    // Not at every piece: the two threads would wake each other all the time.
    const bool half_empty = bytes_ahead_ < kMostBytesAhead / 2;
    lock.unlock();
    if (half_empty)
        room_.notify_one();
    return piece;
}

} // namespace win32
