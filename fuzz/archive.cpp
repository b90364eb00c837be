// Loads anything as an archived tree. What was whole, or what was there before the end, must store and load again as it
// is.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "xml/OvXML.h"

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// False if the archive threw.
bool load(OvXMLElement& element, const void* data, std::size_t size)
{
    CMemFile file;
    file.Write(data, static_cast<UINT>(size));
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    try {
        element.Serialize(archive);
        return true;
    } catch (CArchiveException* exception) {
        exception->Delete();
        return false;
    }
}

std::string stored(OvXMLElement& element)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    element.Serialize(archive);
    archive.Close();
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    OvXMLElement element;
    load(element, data, size);
    const std::string bytes = stored(element);
    OvXMLElement once;
    require(load(once, bytes.data(), bytes.size()));
    OvXMLElement twice;
    const std::string again = stored(once);
    require(load(twice, again.data(), again.size()) && stored(twice) == bytes);

    // Into an element that holds something already: what it held under a key comes back to us.
    OvXMLElement full(nullptr, "full");
    OvXMLAttribute* attribute = full.AddAttribute("a", "1");
    load(full, data, size);
    if (full.GetAttribute("a") != attribute)
        delete attribute;
    const CString text = element.ToString(1, 1);
    return 0;
}
