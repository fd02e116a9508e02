#ifndef KSV_MOF_REPOSITORYBUILDER_H
#define KSV_MOF_REPOSITORYBUILDER_H

#include <map>
#include <string>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMName.h>

#include "mof_compiler/ClassRepository.h"
#include "mof_compiler/MofAst.h"
#include "mof_compiler/NamespaceStore.h"

namespace ksv::mof {

// Collects the definitions of a compilation, namespace by namespace, each
// checked against what the namespace already holds. Not thread-safe: one
// compiler owns it; readers get an immutable snapshot().
class RepositoryBuilder {
public:
    void declareQualifier(const Pegasus::CIMNamespaceName& nameSpace,
                          const ast::QualifierDeclaration& declaration);
    void defineClass(const Pegasus::CIMNamespaceName& nameSpace, const ast::Class& declaration);
    void createInstance(const Pegasus::CIMNamespaceName& nameSpace,
                        const ast::Instance& declaration);

    ClassRepository snapshot() const;

private:
    std::map<std::string, NamespaceStore> _namespaces;

    NamespaceStore& storeFor(const Pegasus::CIMNamespaceName& nameSpace);
};

} // namespace ksv::mof

#endif
