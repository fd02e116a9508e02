#ifndef Pegasus_Method_h
#define Pegasus_Method_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMType.h>

PEGASUS_NAMESPACE_BEGIN

class CIMConstMethod;
class CIMMethodRep;
template <class Member>
class CIMMemberList;

/**
    A method declared by a class: name, return type, parameters,
    qualifiers, class origin and propagated flag. A handle like CIMProperty.
*/
class PEGASUS_COMMON_LINKAGE CIMMethod {
public:
    CIMMethod();
    CIMMethod(const CIMMethod& x);
    /** @exception UninitializedObjectException if name is null. */
    CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(),
              Boolean propagated = false);
    ~CIMMethod();
    CIMMethod& operator=(const CIMMethod& x);

    const CIMName& getName() const;
    void setName(const CIMName& name);
    CIMType getType() const;
    void setType(CIMType type);
    const CIMName& getClassOrigin() const;
    void setClassOrigin(const CIMName& classOrigin);
    Boolean getPropagated() const;
    void setPropagated(Boolean propagated);

    CIMMethod& addQualifier(const CIMQualifier& x);
    Uint32 findQualifier(const CIMName& name) const;
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /** @exception AlreadyExistsException if the name is taken (any case). */
    CIMMethod& addParameter(const CIMParameter& x);
    Uint32 findParameter(const CIMName& name) const;
    CIMParameter getParameter(Uint32 index);
    CIMConstParameter getParameter(Uint32 index) const;
    void removeParameter(Uint32 index);
    Uint32 getParameterCount() const;

    Boolean isUninitialized() const;
    /** Same name, type, qualifiers and parameters. */
    Boolean identical(const CIMConstMethod& x) const;
    CIMMethod clone() const;

private:
    explicit CIMMethod(std::shared_ptr<CIMMethodRep> rep);

    std::shared_ptr<CIMMethodRep> _rep;

    friend class CIMConstMethod;
    template <class Member>
    friend class CIMMemberList;
};

/** Read-only view of a method. */
class PEGASUS_COMMON_LINKAGE CIMConstMethod {
public:
    CIMConstMethod();
    CIMConstMethod(const CIMConstMethod& x);
    CIMConstMethod(const CIMMethod& x);
    CIMConstMethod(const CIMName& name, CIMType type, const CIMName& classOrigin = CIMName(),
                   Boolean propagated = false);
    ~CIMConstMethod();
    CIMConstMethod& operator=(const CIMConstMethod& x);
    CIMConstMethod& operator=(const CIMMethod& x);

    const CIMName& getName() const;
    CIMType getType() const;
    const CIMName& getClassOrigin() const;
    Boolean getPropagated() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Uint32 findParameter(const CIMName& name) const;
    CIMConstParameter getParameter(Uint32 index) const;
    Uint32 getParameterCount() const;
    Boolean isUninitialized() const;
    Boolean identical(const CIMConstMethod& x) const;
    CIMMethod clone() const;

private:
    std::shared_ptr<CIMMethodRep> _rep;

    friend class CIMMethod;
};

PEGASUS_NAMESPACE_END

#endif
