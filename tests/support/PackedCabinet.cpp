#include "tests/support/PackedCabinet.h"

#include <cstdlib>

#include <libgcab.h>

namespace test {

std::string packed_cabinet(const std::vector<CabinetFile>& files)
{
    GCabFolder* folder = gcab_folder_new(GCAB_COMPRESSION_MSZIP);
    GDateTime* date = g_date_time_new_utc(2008, 5, 1, 12, 0, 0);
    for (const CabinetFile& file : files) {
        GBytes* content = g_bytes_new(file.content.data(), file.content.size());
        GCabFile* entry = gcab_file_new_with_bytes(file.name.c_str(), content);
        gcab_file_set_attributes(entry, file.attributes);
        gcab_file_set_date_time(entry, date);
        if (!gcab_folder_add_file(folder, entry, FALSE, nullptr, nullptr))
            std::abort(); // a test without its input must not run
        g_object_unref(entry);
        g_bytes_unref(content);
    }
    GCabCabinet* cabinet = gcab_cabinet_new();
    GOutputStream* stream = g_memory_output_stream_new_resizable();
    if (!gcab_cabinet_add_folder(cabinet, folder, nullptr) ||
        !gcab_cabinet_write_simple(cabinet, stream, nullptr, nullptr, nullptr, nullptr))
        std::abort();
    auto* memory = reinterpret_cast<GMemoryOutputStream*>(stream);
    std::string bytes(static_cast<const char*>(g_memory_output_stream_get_data(memory)),
                      g_memory_output_stream_get_data_size(memory));
    g_object_unref(stream);
    g_object_unref(cabinet);
    g_object_unref(folder);
    g_date_time_unref(date);
    return bytes;
}

} // namespace test
