// The active array model, shared by every thread of the process.
#ifndef KSVSIM_MODEL_STORE_H
#define KSVSIM_MODEL_STORE_H

#include "model.h"

#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>

namespace ksvsim::detail {

class ModelStore {
public:
    // On first use the model named by KSV_ARRAY_MODEL is loaded, or the
    // built-in one when the variable is unset or the file is refused.
    static ModelStore& instance();

    template <typename Reader>
    auto read(Reader&& reader) const {
        std::shared_lock<std::shared_mutex> lock(mutex_);
        return reader(static_cast<const Model&>(*model_));
    }

    template <typename Writer>
    auto update(Writer&& writer) {
        std::unique_lock<std::shared_mutex> lock(mutex_);
        return writer(*model_);
    }

    std::optional<ModelError> loadFile(const std::string& path);
    std::optional<ModelError> loadText(const std::string& text, const std::string& source);
    void useBuiltIn();

private:
    ModelStore();
    void install(Model model);

    mutable std::shared_mutex mutex_;
    std::unique_ptr<Model> model_;
};

} // namespace ksvsim::detail

#endif // KSVSIM_MODEL_STORE_H
