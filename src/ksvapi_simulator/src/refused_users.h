// Users refused by the test control whatever the model grants.
#ifndef KSVSIM_REFUSED_USERS_H
#define KSVSIM_REFUSED_USERS_H

#include <mutex>
#include <set>
#include <string>

namespace ksvsim::detail {

class RefusedUsers {
public:
    static RefusedUsers& instance() {
        static RefusedUsers* users = new RefusedUsers; // never destroyed, as the model
        return *users;
    }

    void refuse(const std::string& name) {
        std::lock_guard<std::mutex> lock(mutex_);
        names_.insert(name);
    }

    void clear() {
        std::lock_guard<std::mutex> lock(mutex_);
        names_.clear();
    }

    bool isRefused(const std::string& name) const {
        std::lock_guard<std::mutex> lock(mutex_);
        return names_.count(name) != 0;
    }

private:
    mutable std::mutex mutex_;
    std::set<std::string> names_;
};

} // namespace ksvsim::detail

#endif // KSVSIM_REFUSED_USERS_H
