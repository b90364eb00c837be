// What an attribute stands under in its element's map.
#pragma once

#include <string>
#include <string_view>

#include "xml/OvXML.h"

// What a node's parent and name do not tell of its place, once one of them was changed there.
struct OvXMLNode::Apart {
    OvXMLElement* pParent; // borrowed
    OvXMLElement* pHolder; // borrowed; alive as long as it holds the node
    std::string strKey;    // of an attribute
};

// A key for looking up and storing: a text, or the lower case (ASCII alone) of one.
struct OvXMLAttribute::Key {
    enum class Form {
        Lowered, // the key is the text's lower case
        Written, // the key is the text itself
        Apart    // likewise, and the text is not the attribute's name
    };

    Key(std::string_view keyText, Form keyForm) : text(keyText), form(keyForm), nHash(Hash()) {}
    Key(std::string_view keyText, Form keyForm, unsigned nKnownHash) : text(keyText), form(keyForm), nHash(nKnownHash)
    {}

    static char Lower(char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch | 0x20) : ch; }
    static unsigned AddToHash(unsigned nHash, char ch)
    {
        return nHash * 33 + static_cast<unsigned>(static_cast<signed char>(ch));
    }

    char At(size_t i) const { return form == Form::Lowered ? Lower(text[i]) : text[i]; }
    bool operator==(const Key& other) const
    {
        if (nHash != other.nHash || text.size() != other.text.size())
            return false;
        for (size_t i = 0; i < text.size(); i++) {
            if (At(i) != other.At(i))
                return false;
        }
        return true;
    }
    std::string ToString() const
    {
        std::string strKey(text);
        for (size_t i = 0; i < strKey.size(); i++)
            strKey[i] = At(i);
        return strKey;
    }

    std::string_view text;
    Form form;
    unsigned nHash;

private:
    unsigned Hash() const
    {
        unsigned nSum = 0;
        for (size_t i = 0; i < text.size(); i++)
            nSum = AddToHash(nSum, At(i));
        return nSum;
    }
};

inline OvXMLAttribute::Key OvXMLAttribute::GetKey() const
{
    if (m_bApart)
        return { m_pApart->strKey, Key::Form::Apart, m_nHash };
    return { Name(), m_bKeyAsWritten ? Key::Form::Written : Key::Form::Lowered, m_nHash };
}
