#include "tools/packer/Cabinet.h"

#include <memory>

#include <libgcab.h>

namespace packer {

namespace {

struct Unref {
    void operator()(gpointer pObject) const { g_object_unref(pObject); }
};
template <class T>
using Ref = std::unique_ptr<T, Unref>;

struct DateTimeUnref {
    void operator()(GDateTime* pTime) const { g_date_time_unref(pTime); }
};

bool Fail(std::string* pError, GError* pCause)
{
    *pError = pCause ? pCause->message : "the cabinet cannot be made";
    g_clear_error(&pCause);
    return false;
}

int AttributesOf(const PackEntry& entry)
{
    return entry.kind == EntryKind::Program ? kAttributeArchive | kAttributeProgram : kAttributeArchive;
}

} // namespace

bool WriteCabinet(const std::vector<PackEntry>& entries, std::string* pCabinet, std::string* pError)
{
    const std::unique_ptr<GDateTime, DateTimeUnref> pTime(g_date_time_new_utc(2026, 11, 1, 12, 0, 0));
    const Ref<GCabCabinet> pCab(gcab_cabinet_new());
    const Ref<GCabFolder> pFolder(gcab_folder_new(GCAB_COMPRESSION_MSZIP));
    GError* pCause = nullptr;
    for (const PackEntry& entry : entries) {
        GBytes* pBytes = g_bytes_new_static(entry.strBytes.data(), entry.strBytes.size());
        const Ref<GCabFile> pFile(gcab_file_new_with_bytes(entry.strName.c_str(), pBytes));
        g_bytes_unref(pBytes);
        gcab_file_set_date_time(pFile.get(), pTime.get());
        gcab_file_set_attributes(pFile.get(), static_cast<guint32>(AttributesOf(entry)));
        if (!gcab_folder_add_file(pFolder.get(), pFile.get(), FALSE, nullptr, &pCause))
            return Fail(pError, pCause);
    }
    if (!gcab_cabinet_add_folder(pCab.get(), pFolder.get(), &pCause))
        return Fail(pError, pCause);

    const Ref<GOutputStream> pStream(g_memory_output_stream_new_resizable());
    if (!gcab_cabinet_write_simple(pCab.get(), pStream.get(), nullptr, nullptr, nullptr, &pCause) ||
        !g_output_stream_close(pStream.get(), nullptr, &pCause))
        return Fail(pError, pCause);
    auto* pMemory = G_MEMORY_OUTPUT_STREAM(pStream.get());
    pCabinet->assign(static_cast<const char*>(g_memory_output_stream_get_data(pMemory)),
                     g_memory_output_stream_get_data_size(pMemory));
    return true;
}

namespace {

// Compares what a reader took out with what was put in.
bool CompareMembers(const char* pszReader, const std::vector<PackEntry>& entries,
                    const std::vector<CabinetMember>& members, bool bAttributes, std::string* pError)
{
    const std::string strBy = std::string(pszReader) + ": ";
    if (members.size() != entries.size()) {
        *pError = strBy + std::to_string(members.size()) + " entries come out";
        return false;
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (members[i].strName != entries[i].strName) {
            *pError = strBy + entries[i].strName + " comes out as " + members[i].strName;
            return false;
        }
        if (members[i].strBytes != entries[i].strBytes) {
            *pError = strBy + entries[i].strName + " comes out with other bytes";
            return false;
        }
        if (bAttributes && members[i].nAttributes != AttributesOf(entries[i])) {
            *pError =
                strBy + entries[i].strName + " comes out with attributes " + std::to_string(members[i].nAttributes);
            return false;
        }
    }
    return true;
}

} // namespace

bool ProveCabinet(const PackRules& rules, const std::vector<PackEntry>& entries, const std::string& strCabinet,
                  std::string* pError)
{
    std::vector<CabinetMember> members;
    if (!ReadByLibarchive(strCabinet, &members, pError) ||
        !CompareMembers("libarchive", entries, members, false, pError))
        return false;
    members.clear();
    if (!ReadByLibmspack(strCabinet, &members, pError) || !CompareMembers("libmspack", entries, members, true, pError))
        return false;

    std::vector<PackEntry> unpacked; // the rules are put to what a user will get, not to what we meant
    unpacked.reserve(members.size());
    for (CabinetMember& member : members)
        unpacked.push_back({ std::move(member.strName), EntryKind::Data, {}, std::move(member.strBytes) });
    return CheckEntries(rules, unpacked, pError);
}

} // namespace packer
