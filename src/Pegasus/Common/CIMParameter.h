#ifndef Pegasus_Parameter_h
#define Pegasus_Parameter_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMConstParameter;
class CIMParameterRep;
template <class Member>
class CIMMemberList;

/**
    A parameter of a method declaration: name, type, array flag and size,
    reference class and qualifiers. A handle like CIMProperty.
*/
class PEGASUS_COMMON_LINKAGE CIMParameter {
public:
    CIMParameter();
    CIMParameter(const CIMParameter& x);
    /**
        @exception TypeMismatchException if arraySize is given for a scalar,
            or if referenceClassName is given exactly when type is not
            CIMTYPE_REFERENCE.
        @exception UninitializedObjectException if name is null.
    */
    CIMParameter(const CIMName& name, CIMType type, Boolean isArray = false, Uint32 arraySize = 0,
                 const CIMName& referenceClassName = CIMName());
    ~CIMParameter();
    CIMParameter& operator=(const CIMParameter& x);

    const CIMName& getName() const;
    void setName(const CIMName& name);
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    CIMType getType() const;

    CIMParameter& addQualifier(const CIMQualifier& x);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    void removeQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;

    Boolean isUninitialized() const;
    Boolean identical(const CIMConstParameter& x) const;
    CIMParameter clone() const;

private:
    explicit CIMParameter(std::shared_ptr<CIMParameterRep> rep);

    std::shared_ptr<CIMParameterRep> _rep;

    friend class CIMConstParameter;
    template <class Member>
    friend class CIMMemberList;
};

/** Read-only view of a parameter. */
class PEGASUS_COMMON_LINKAGE CIMConstParameter {
public:
    CIMConstParameter();
    CIMConstParameter(const CIMConstParameter& x);
    CIMConstParameter(const CIMParameter& x);
    CIMConstParameter(const CIMName& name, CIMType type, Boolean isArray = false,
                      Uint32 arraySize = 0, const CIMName& referenceClassName = CIMName());
    ~CIMConstParameter();
    CIMConstParameter& operator=(const CIMConstParameter& x);
    CIMConstParameter& operator=(const CIMParameter& x);

    const CIMName& getName() const;
    Boolean isArray() const;
    Uint32 getArraySize() const;
    const CIMName& getReferenceClassName() const;
    CIMType getType() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstParameter& x) const;
    CIMParameter clone() const;

private:
    std::shared_ptr<CIMParameterRep> _rep;

    friend class CIMParameter;
};

PEGASUS_NAMESPACE_END

#endif
