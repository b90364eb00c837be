#include "platform/win32/setupapi/cabinet.h"

#include "platform/win32/kernel/file_system.h"
#include "platform/win32/kernel/native_path.h"
#include "platform/win32/kernel/unique_fd.h"
#include "setupapi.h"
#include "winbase.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <tuple>
#include <unordered_map>

#include <fcntl.h>
#include <mspack.h>
#include <sys/stat.h>

namespace win32 {

namespace {

// No honest cabinet holds more: a block unpacks to 32 KiB at most and costs its header of 8 bytes at least.
constexpr std::uint64_t kMostUnpackedPerByte = 32768 / 8;

constexpr int kDecoderInput = 32768; // bytes that the decoder takes at a time: its own choice is an eighth of a block

// libmspack's open file: the cabinet at a position of its own, or the sink of the entry being read.
struct OpenFile : mspack_file {
    OpenFile(int cabinet, EntrySink* entry, std::uint64_t* count)
        : mspack_file{}, descriptor(cabinet), sink(entry), taken(count)
    {}
    const int descriptor;
    off_t offset = 0;
    EntrySink* const sink;
    std::uint64_t* const taken;

    // What was last read for the sake of a few bytes: the headers of blocks and entries.
    std::array<char, 4096> window;
    off_t window_start = 0;
    off_t window_end = 0;
};

OpenFile* ours(mspack_file* file)
{
    return static_cast<OpenFile*>(file);
}

// The bytes read, 0 at the end of the file, -1 on failure.
ssize_t read_some(const OpenFile& file, void* buffer, std::size_t bytes)
{
    for (;;) {
        const ssize_t got = ::pread(file.descriptor, buffer, bytes, file.offset);
        if (got >= 0 || errno != EINTR)
            return got;
    }
}

int read_at(mspack_file* opened, void* buffer, int bytes)
{
    OpenFile* file = ours(opened);
    if (file->sink || bytes < 0)
        return -1;
    int total = 0;
    while (total < bytes) {
        char* to = static_cast<char*>(buffer) + total;
        const auto wanted = static_cast<std::size_t>(bytes - total);
        ssize_t got = 0;
        if (file->offset >= file->window_start && file->offset < file->window_end) {
            got = static_cast<ssize_t>(
                std::min<std::size_t>(wanted, static_cast<std::size_t>(file->window_end - file->offset)));
            std::memcpy(to, file->window.data() + (file->offset - file->window_start), static_cast<std::size_t>(got));
        } else if (wanted >= file->window.size()) {
            got = read_some(*file, to, wanted);
        } else {
            const ssize_t filled = read_some(*file, file->window.data(), file->window.size());
            file->window_start = file->offset;
            file->window_end = file->offset + std::max<ssize_t>(filled, 0);
            if (filled > 0)
                continue;
            got = filled;
        }
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        file->offset += got;
        total += static_cast<int>(got);
    }
    return total;
}

int give_to_sink(mspack_file* opened, void* buffer, int bytes)
{
    const OpenFile* file = ours(opened);
    if (!file->sink || bytes < 0)
        return -1;
    if (!file->sink->take({ static_cast<const std::byte*>(buffer), static_cast<std::size_t>(bytes) }))
        return -1;
    *file->taken += static_cast<std::uint64_t>(bytes);
    return bytes;
}

int seek(mspack_file* opened, off_t offset, int mode)
{
    OpenFile* file = ours(opened);
    off_t from = 0;
    if (mode == MSPACK_SYS_SEEK_CUR)
        from = file->offset;
    struct stat info {};
    if (mode == MSPACK_SYS_SEEK_END && ::fstat(file->descriptor, &info) == 0)
        from = info.st_size;
    off_t target = 0;
    if (__builtin_add_overflow(from, offset, &target) || target < 0)
        return -1;
    file->offset = target;
    return 0;
}

off_t tell(mspack_file* file)
{
    return ours(file)->offset;
}

void close(mspack_file* file)
{
    const std::unique_ptr<OpenFile> owned(ours(file));
}

void message(mspack_file*, const char*, ...)
{
    // says in words what the result says in numbers
}

void* allocate(mspack_system*, std::size_t bytes)
{
    return std::malloc(bytes);
}

void release(void* memory)
{
    std::free(memory);
}

void copy(void* source, void* destination, std::size_t bytes)
{
    std::memcpy(destination, source, bytes);
}

DWORD error_from_mspack(int error)
{
    switch (error) {
    case MSPACK_ERR_OK:
        return NO_ERROR;
    case MSPACK_ERR_NOMEMORY:
        return ERROR_NOT_ENOUGH_MEMORY;
    case MSPACK_ERR_CHECKSUM:
        return ERROR_CRC;
    default:
        return ERROR_INVALID_DATA;
    }
}

WORD dos_date(const mscabd_file& file)
{
    return static_cast<WORD>(((file.date_y - 1980) << 9) | (file.date_m << 5) | file.date_d);
}

WORD dos_time(const mscabd_file& file)
{
    return static_cast<WORD>((file.time_h << 11) | (file.time_m << 5) | (file.time_s >> 1));
}

} // namespace

// libmspack's decompressor with the one cabinet it reads, and the outside as it shall see it.
class Cabinet::Decoder : public mspack_system {
public:
    Decoder() : mspack_system{}
    {
        mspack_system::open = [](mspack_system* self, const char*, int mode) {
            return static_cast<Decoder*>(self)->open_file(mode);
        };
        mspack_system::close = win32::close;
        read = read_at;
        write = give_to_sink;
        mspack_system::seek = win32::seek;
        mspack_system::tell = win32::tell;
        mspack_system::message = win32::message;
        alloc = allocate;
        free = release;
        mspack_system::copy = win32::copy;
        decompressor_ = mspack_create_cab_decompressor(this);
    }
    ~Decoder()
    {
        if (cabinet_)
            decompressor_->close(decompressor_, cabinet_);
        if (decompressor_)
            mspack_destroy_cab_decompressor(decompressor_);
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    DWORD open_cabinet(UniqueFd descriptor)
    {
        descriptor_ = std::move(descriptor);
        if (!decompressor_)
            return ERROR_NOT_ENOUGH_MEMORY;
        (void)decompressor_->set_param(decompressor_, MSCABD_PARAM_DECOMPBUF, kDecoderInput);
        cabinet_ = decompressor_->open(decompressor_, "");
        return cabinet_ ? NO_ERROR : error_from_mspack(decompressor_->last_error(decompressor_));
    }

    const mscabd_cabinet& cabinet() const { return *cabinet_; }

    DWORD extract(mscabd_file* file, EntrySink& sink)
    {
        sink_ = &sink;
        taken_ = 0;
        const DWORD error = error_from_mspack(decompressor_->extract(decompressor_, file, ""));
        return error == NO_ERROR && taken_ != file->length ? ERROR_INVALID_DATA : error;
    }

private:
    // What to open is known without a name: the cabinet for reading, the current sink for writing.
    mspack_file* open_file(int mode)
    {
        if (mode == MSPACK_SYS_OPEN_READ)
            return new (std::nothrow) OpenFile(descriptor_.get(), nullptr, nullptr);
        return new (std::nothrow) OpenFile(-1, sink_, &taken_);
    }

    UniqueFd descriptor_;
    mscab_decompressor* decompressor_ = nullptr; // owned
    mscabd_cabinet* cabinet_ = nullptr;          // owned
    EntrySink* sink_ = nullptr;
    std::uint64_t taken_ = 0;
};

Cabinet::Cabinet() = default;
Cabinet::~Cabinet() = default;

DWORD Cabinet::open(const std::string& path)
{
    // a pipe in the cabinet's place must not make us wait
    const int opened = file_system().open(path, O_RDONLY | O_NONBLOCK, 0);
    if (opened < 0)
        return error_for_path(opened, path);
    UniqueFd descriptor(opened);
    struct stat info {};
    if (::fstat(opened, &info) != 0 || !S_ISREG(info.st_mode))
        return ERROR_ACCESS_DENIED;

    entries_.clear();
    decoder_ = std::make_unique<Decoder>();
    if (const DWORD error = decoder_->open_cabinet(std::move(descriptor)); error != NO_ERROR)
        return error;
    budget_ = static_cast<std::uint64_t>(info.st_size) * kMostUnpackedPerByte;
    list_entries();
    return NO_ERROR;
}

void Cabinet::list_entries()
{
    std::unordered_map<const mscabd_folder*, std::uint32_t> order;
    for (const mscabd_folder* folder = decoder_->cabinet().folders; folder; folder = folder->next)
        order.emplace(folder, static_cast<std::uint32_t>(order.size()));
    for (mscabd_file* file = decoder_->cabinet().files; file; file = file->next) {
        entries_.push_back({ file->filename, file->length, dos_date(*file), dos_time(*file),
                             static_cast<WORD>(file->attribs), order[file->folder], file->offset, file });
    }
    std::stable_sort(entries_.begin(), entries_.end(), [](const CabinetEntry& a, const CabinetEntry& b) {
        return std::tie(a.folder, a.offset) < std::tie(b.folder, b.offset);
    });
}

DWORD Cabinet::read(const CabinetEntry& entry, EntrySink& sink)
{
    if (entry.size == 0)
        return NO_ERROR; // wherever it says it lies: the decoder would go there for nothing
    if (entry.folder != folder_) {
        folder_ = entry.folder;
        position_ = 0;
        folder_error_ = NO_ERROR;
    }
    if (folder_error_ != NO_ERROR)
        return folder_error_;
    if (!grant(entry))
        return ERROR_INVALID_DATA;
    folder_error_ = decoder_->extract(entry.file, sink);
    return folder_error_;
}

// Moves the position behind the entry. Work is bounded by what the file can honestly hold: the decoder never goes back
// in a folder, and data that several folders claim is paid for each time.
bool Cabinet::grant(const CabinetEntry& entry)
{
    const std::uint64_t end = std::uint64_t{ entry.offset } + entry.size;
    if (entry.offset < position_ || end - position_ > budget_)
        return false;
    budget_ -= end - position_;
    position_ = end;
    return true;
}

} // namespace win32
