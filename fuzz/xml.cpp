// Reads anything as a document and, where it is one, writes it, reads that again and writes it again: the second text
// must be the first, and the trees must be equal wherever text keeps everything (white space is folded anew, zero bytes
// end a value, and names can hold only what a name may).
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "xml/OvXML.h"

namespace {

using Tree = std::unique_ptr<OvXMLElement>;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

std::string text_of(OvXMLElement& element, int new_lines)
{
    const CString text = element.ToString(0, new_lines);
    return { text, static_cast<std::size_t>(text.GetLength()) };
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const Tree tree(OvXMLElement::FromString(input.c_str(), FALSE));
    const Tree strict(OvXMLElement::FromString(input.c_str(), TRUE));
    require(!strict || (tree && tree->Equals(strict.get())));
    if (!tree)
        return 0;

    const Tree clone(tree->Clone(nullptr));
    require(clone->Equals(tree.get()) && tree->Equals(clone.get()));

    // Reading once more folds a space in front of a value away and turns the attributes of a bucket round; after that
    // nothing changes but their order, twice.
    const Tree once(OvXMLElement::FromString(text_of(*tree, 0).c_str(), FALSE));
    require(once != nullptr);
    const Tree twice(OvXMLElement::FromString(text_of(*once, 0).c_str(), FALSE));
    require(twice && twice->Equals(once.get()));
    const Tree thrice(OvXMLElement::FromString(text_of(*twice, 0).c_str(), FALSE));
    require(thrice && text_of(*thrice, 0) == text_of(*once, 0));
    const Tree lines(OvXMLElement::FromString(text_of(*once, 1).c_str(), FALSE));
    require(lines != nullptr);

    CString words = tree->GetRecursiveWords();
    OvXMLNode::UniformString(words);
    std::string bytes = input;
    const Tree from_bytes(OvXMLElement::FromBytes(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), FALSE));
    return 0;
}
