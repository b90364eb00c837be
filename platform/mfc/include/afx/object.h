// CObject and what an object can say about its class at run time.
#pragma once

#include <windows.h>

class CArchive;
class CObject;

// What is known of a class while the program runs. One object a class, made by the macros below, alive from
// before the first constructor to the end of the process.
struct CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;                     // bytes
    CObject* (*m_pfnCreateObject)();       // null: the class cannot be created by its description
    CRuntimeClass* (*m_pfnGetBaseClass)(); // null: the root

    // A new object that the caller owns; null if the class cannot be created this way.
    CObject* CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }
    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
};

// The root of the framework's classes.
class CObject {
public:
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    static CRuntimeClass* GetThisClass();
    virtual CRuntimeClass* GetRuntimeClass() const { return GetThisClass(); }
    // TRUE for the object's own class and every class beneath it that was declared dynamic.
    BOOL IsKindOf(const CRuntimeClass* pClass) const { return GetRuntimeClass()->IsDerivedFrom(pClass); }

    // Stores or loads the object's state, by the archive's direction. Nothing here.
    virtual void Serialize(CArchive& ar);

protected:
    CObject() = default;
};

// Accepts a name with its namespace.
#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

#define DECLARE_DYNAMIC(class_name)                                                                                    \
public:                                                                                                                \
    static CRuntimeClass* GetThisClass();                                                                              \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name)                                                                                  \
    DECLARE_DYNAMIC(class_name)                                                                                        \
    static CObject* CreateObject();

#define IMPLEMENT_RUNTIME_CLASS(class_name, base_class_name, create)                                                   \
    CRuntimeClass* class_name::GetThisClass()                                                                          \
    {                                                                                                                  \
        static constinit CRuntimeClass runtime_class = { #class_name, sizeof(class_name), create,                      \
                                                         &base_class_name::GetThisClass };                             \
        return &runtime_class;                                                                                         \
    }                                                                                                                  \
    CRuntimeClass* class_name::GetRuntimeClass() const                                                                 \
    {                                                                                                                  \
        return GetThisClass();                                                                                         \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name) IMPLEMENT_RUNTIME_CLASS(class_name, base_class_name, nullptr)

// The class needs a constructor without arguments.
#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                                               \
    CObject* class_name::CreateObject()                                                                                \
    {                                                                                                                  \
        return new class_name;                                                                                         \
    }                                                                                                                  \
    IMPLEMENT_RUNTIME_CLASS(class_name, base_class_name, &class_name::CreateObject)

// `pObject` as the class, or null when it is null or of another kind.
#define DYNAMIC_DOWNCAST(class_name, object)                                                                           \
    (static_cast<class_name*>(AfxDynamicDownCast(RUNTIME_CLASS(class_name), object)))

CObject* AfxDynamicDownCast(const CRuntimeClass* pClass, CObject* pObject);
