#include <Pegasus/Common/OperationContext.h>

#include <algorithm>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

// Outside the anonymous namespace: the class that holds them is declared in the header.
// Containers may come from other libraries, so they are released through their own destroy().
struct ContainerDestroyer {
    void operator()(OperationContext::Container* container) const { container->destroy(); }
};

using ContainerPtr = std::unique_ptr<OperationContext::Container, ContainerDestroyer>;

namespace {

const char* const objectNotFound = "object not found";
const char* const objectAlreadyExists = "object already exists.";

template <class ContainerType>
const ContainerType& castContainer(const OperationContext::Container& container) {
    const auto* typed = dynamic_cast<const ContainerType*>(&container);
    if (typed == nullptr) {
        throw DynamicCastFailedException();
    }
    return *typed;
}

} // namespace

class OperationContextRep {
public:
    std::vector<ContainerPtr> containers;

    std::vector<ContainerPtr>::iterator find(const String& name) {
        return std::find_if(containers.begin(), containers.end(),
                            [&name](const ContainerPtr& held) { return held->getName() == name; });
    }

    std::vector<ContainerPtr>::iterator findExisting(const String& name) {
        auto found = find(name);
        if (found == containers.end()) {
            throw Exception(objectNotFound);
        }
        return found;
    }
};

OperationContext::Container::~Container() = default;

OperationContext::OperationContext() : _rep(new OperationContextRep) {}

OperationContext::OperationContext(const OperationContext& context)
    : _rep(new OperationContextRep) {
    *this = context;
}

OperationContext::~OperationContext() = default;

OperationContext& OperationContext::operator=(const OperationContext& context) {
    if (this == &context) {
        return *this;
    }
    std::vector<ContainerPtr> copies;
    copies.reserve(context._rep->containers.size());
    for (const ContainerPtr& held : context._rep->containers) {
        copies.emplace_back(held->clone());
    }
    _rep->containers.swap(copies);
    return *this;
}

void OperationContext::clear() {
    _rep->containers.clear();
}

const OperationContext::Container& OperationContext::get(const String& containerName) const {
    return **_rep->findExisting(containerName);
}

Boolean OperationContext::contains(const String& containerName) const {
    return _rep->find(containerName) != _rep->containers.end();
}

void OperationContext::set(const Container& container) {
    auto found = _rep->findExisting(container.getName());
    found->reset(container.clone());
}

void OperationContext::insert(const Container& container) {
    if (contains(container.getName())) {
        throw Exception(objectAlreadyExists);
    }
    _rep->containers.emplace_back(container.clone());
}

void OperationContext::remove(const String& containerName) {
    _rep->containers.erase(_rep->findExisting(containerName));
}

// IdentityContainer

const String IdentityContainer::NAME = "IdentityContainer";

IdentityContainer::IdentityContainer(const OperationContext::Container& container)
    : IdentityContainer(castContainer<IdentityContainer>(container)) {}

IdentityContainer::IdentityContainer(const IdentityContainer& container)
    : OperationContext::Container(), _userName(container._userName) {}

IdentityContainer::IdentityContainer(const String& userName) : _userName(userName) {}

IdentityContainer::~IdentityContainer() = default;

IdentityContainer& IdentityContainer::operator=(const IdentityContainer& container) {
    _userName = container._userName;
    return *this;
}

String IdentityContainer::getName() const {
    return NAME;
}

OperationContext::Container* IdentityContainer::clone() const {
    return new IdentityContainer(*this);
}

void IdentityContainer::destroy() {
    delete this;
}

String IdentityContainer::getUserName() const {
    return _userName;
}

// TimeoutContainer

const String TimeoutContainer::NAME = "TimeoutContainer";

TimeoutContainer::TimeoutContainer(const OperationContext::Container& container)
    : TimeoutContainer(castContainer<TimeoutContainer>(container)) {}

TimeoutContainer::TimeoutContainer(Uint32 timeout) : _value(timeout) {}

String TimeoutContainer::getName() const {
    return NAME;
}

OperationContext::Container* TimeoutContainer::clone() const {
    return new TimeoutContainer(_value);
}

void TimeoutContainer::destroy() {
    delete this;
}

Uint32 TimeoutContainer::getTimeOut() const {
    return _value;
}

PEGASUS_NAMESPACE_END
