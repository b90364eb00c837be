#include "afx/object.h"

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const
{
    for (const CRuntimeClass* pClass = this; pClass;
         pClass = pClass->m_pfnGetBaseClass ? pClass->m_pfnGetBaseClass() : nullptr) {
        if (pClass == pBaseClass)
            return TRUE;
    }
    return FALSE;
}

CRuntimeClass* CObject::GetThisClass()
{
    static constinit CRuntimeClass runtime_class = { "CObject", sizeof(CObject), nullptr, nullptr };
    return &runtime_class;
}

void CObject::Serialize(CArchive& /*ar*/) {}

CObject* AfxDynamicDownCast(const CRuntimeClass* pClass, CObject* pObject)
{
    return pObject && pObject->IsKindOf(pClass) ? pObject : nullptr;
}
