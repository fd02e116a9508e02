#ifndef KSV_MOF_CLASSREPOSITORY_H
#define KSV_MOF_CLASSREPOSITORY_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>

namespace ksv::mof {

struct NamespaceStore;

// Counts of what one namespace holds.
struct NamespaceSummary {
    Pegasus::CIMNamespaceName name;
    Pegasus::Uint32 qualifiers = 0;
    Pegasus::Uint32 classes = 0;
    Pegasus::Uint32 instances = 0;
};

// The compiled classes, qualifier declarations and instances, per
// namespace. Immutable once the compiler hands it out: every member is
// const and returns copies (clones) of what it holds, so any number of
// threads may read one repository, or copies of it, at once without a lock.
// Names of namespaces, classes, properties and qualifiers are matched
// without regard to case. Lookups of something that does not exist throw
// Pegasus::CIMException with the status code a CIM server returns for it.
class ClassRepository {
public:
    // An empty repository.
    ClassRepository();
    // What the compiler built, keyed by folded namespace name.
    explicit ClassRepository(std::map<std::string, NamespaceStore> namespaces);
    ~ClassRepository();

    Pegasus::Array<Pegasus::CIMNamespaceName> enumerateNameSpaces() const;
    bool nameSpaceExists(const Pegasus::CIMNamespaceName& nameSpace) const;
    std::vector<NamespaceSummary> summary() const;

    // GetClass of DSP0200: localOnly keeps only the properties, methods and
    // qualifiers the class itself defines or overrides; includeQualifiers
    // false strips every qualifier; includeClassOrigin false clears the class
    // origins; a non-null property list keeps only the properties it names.
    // CIM_ERR_INVALID_NAMESPACE or CIM_ERR_NOT_FOUND when absent.
    Pegasus::CIMClass
    getClass(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className,
             bool localOnly, bool includeQualifiers, bool includeClassOrigin,
             const Pegasus::CIMPropertyList& propertyList = Pegasus::CIMPropertyList()) const;

    // EnumerateClassNames of DSP0200: with a null class name the root
    // classes (every class when deep); otherwise the direct subclasses (all
    // descendants when deep), in definition order. CIM_ERR_INVALID_CLASS for
    // an unknown class.
    Pegasus::Array<Pegasus::CIMName> enumerateClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& className,
                                                         bool deepInheritance) const;

    // EnumerateClasses: the classes enumerateClassNames names, each filtered
    // as getClass does (no property list).
    Pegasus::Array<Pegasus::CIMClass> enumerateClasses(const Pegasus::CIMNamespaceName& nameSpace,
                                                       const Pegasus::CIMName& className,
                                                       bool deepInheritance, bool localOnly,
                                                       bool includeQualifiers,
                                                       bool includeClassOrigin) const;

    // True when className is ancestor or one of its descendants; false when
    // either is unknown.
    bool isSubclassOf(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className,
                      const Pegasus::CIMName& ancestor) const;

    Pegasus::CIMQualifierDecl getQualifier(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& qualifierName) const;
    Pegasus::Array<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const Pegasus::CIMNamespaceName& nameSpace) const;

    // The instances of the class and of its subclasses, in definition order.
    Pegasus::Array<Pegasus::CIMInstance>
    enumerateInstances(const Pegasus::CIMNamespaceName& nameSpace,
                       const Pegasus::CIMName& className) const;
    Pegasus::Array<Pegasus::CIMObjectPath>
    enumerateInstanceNames(const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) const;
    // The instance whose keys equal those of the path (host and namespace
    // of the path aside). CIM_ERR_NOT_FOUND when there is none.
    Pegasus::CIMInstance getInstance(const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName) const;

private:
    std::shared_ptr<const std::map<std::string, NamespaceStore>> _namespaces;

    const NamespaceStore& store(const Pegasus::CIMNamespaceName& nameSpace) const;
    const Pegasus::CIMClass& storedClass(const NamespaceStore& store,
                                         const Pegasus::CIMName& className) const;
};

} // namespace ksv::mof

#endif
