// The three calls that answer on a null object. They stand apart because this file alone is compiled so that the
// compiler does not take "this" for an object (see CMakeLists.txt).
#include "xml/OvXML.h"

namespace {

bool IsNull(const void* pObject)
{
    return !pObject;
}

} // namespace

BOOL OvXMLNode::IsNamed(const char* pszName) const
{
    return !IsNull(this) && IsNamedLike(View(pszName));
}

void OvXMLNode::Delete()
{
    if (!IsNull(this))
        delete this; // its destructor takes it out of what holds it
}

OvXMLElement* OvXMLElement::GetFirstElement() const
{
    return IsNull(this) ? nullptr : First();
}
