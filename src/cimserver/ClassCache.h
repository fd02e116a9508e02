// Class definitions as the dispatcher checks requests against them: complete (inherited
// features, qualifiers, class origins) and shared read-only, so that a request costs no copy.
#ifndef KSV_CIMSERVER_CLASSCACHE_H
#define KSV_CIMSERVER_CLASSCACHE_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMName.h>

#include "mof_compiler/ClassRepository.h"

#include <map>
#include <shared_mutex>
#include <string>

namespace ksv::server {

class ClassCache {
public:
    explicit ClassCache(const mof::ClassRepository& repository) : _repository(repository) {}

    // Uninitialized when the namespace holds no such class. Only classes that exist are kept, so
    // the cache never outgrows the repository.
    Pegasus::CIMConstClass find(const Pegasus::CIMNamespaceName& nameSpace,
                                const Pegasus::CIMName& className) const;

private:
    const mof::ClassRepository& _repository;
    mutable std::shared_mutex _mutex;
    mutable std::map<std::string, Pegasus::CIMConstClass> _classes;
};

} // namespace ksv::server

#endif
