#include "RecordingHandlers.h"

#include <algorithm>

namespace ksv::test {

using namespace Pegasus;

size_t ResponseRecord::count(const std::string& event) const {
    return static_cast<size_t>(std::count(_events.begin(), _events.end(), event));
}

void RecordingInstanceHandler::deliver(const CIMInstance& instance) {
    note("deliver");
    delivered.push_back(instance);
}

void RecordingInstanceHandler::deliver(const Array<CIMInstance>& instances) {
    for (Uint32 i = 0; i < instances.size(); i++)
        deliver(instances[i]);
}

void RecordingObjectPathHandler::deliver(const CIMObjectPath& path) {
    note("deliver");
    delivered.push_back(path);
}

void RecordingObjectPathHandler::deliver(const Array<CIMObjectPath>& paths) {
    for (Uint32 i = 0; i < paths.size(); i++)
        deliver(paths[i]);
}

void RecordingObjectHandler::deliver(const CIMObject& object) {
    note("deliver");
    delivered.push_back(object);
}

void RecordingObjectHandler::deliver(const Array<CIMObject>& objects) {
    for (Uint32 i = 0; i < objects.size(); i++)
        deliver(objects[i]);
}

} // namespace ksv::test
