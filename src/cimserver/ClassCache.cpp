#include "cimserver/ClassCache.h"

#include "mof_compiler/NamespaceStore.h"

#include <mutex>

namespace ksv::server {

Pegasus::CIMConstClass ClassCache::find(const Pegasus::CIMNamespaceName& nameSpace,
                                        const Pegasus::CIMName& className) const {
    if (className.isNull() || nameSpace.isNull())
        return Pegasus::CIMConstClass();
    const std::string key = mof::foldName(nameSpace) + ":" + mof::foldName(className);
    {
        std::shared_lock<std::shared_mutex> lock(_mutex);
        auto cached = _classes.find(key);
        if (cached != _classes.end())
            return cached->second;
    }
    Pegasus::CIMConstClass found;
    try {
        found = _repository.getClass(nameSpace, className, false, true, true);
    } catch (const Pegasus::CIMException&) {
        return Pegasus::CIMConstClass();
    }
    std::unique_lock<std::shared_mutex> lock(_mutex);
    return _classes.emplace(key, found).first->second;
}

} // namespace ksv::server
