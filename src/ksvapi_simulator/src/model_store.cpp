#include "model_store.h"

#include "logging.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace ksvsim::detail {
namespace {

constexpr const char kBuiltInSource[] = "<built-in>";

std::optional<std::string> readWholeFile(const std::string& path, std::string& error) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        error = std::string("cannot open file: ") + std::strerror(errno);
        return std::nullopt;
    }
    std::ostringstream content;
    content << file.rdbuf();
    if (file.bad()) {
        error = "cannot read file";
        return std::nullopt;
    }
    return content.str();
}

} // namespace

ModelStore::ModelStore()
    : model_(std::make_unique<Model>(parseModel(kBuiltInModelJson, kBuiltInSource))) {
    const char* path = std::getenv("KSV_ARRAY_MODEL");
    if (path == nullptr || *path == '\0') {
        return;
    }
    if (const auto error = loadFile(path)) {
        logText(KSV_LOG_ERROR,
                "KSV_ARRAY_MODEL refused, using the built-in model: " + error->describe() + "\n");
    }
}

ModelStore& ModelStore::instance() {
    // Never destroyed: server threads may still call in while the process exits.
    static ModelStore* store = new ModelStore;
    return *store;
}

std::optional<ModelError> ModelStore::loadFile(const std::string& path) {
    std::string error;
    const auto text = readWholeFile(path, error);
    if (!text) {
        return ModelError{path, "", error};
    }
    return loadText(*text, path);
}

std::optional<ModelError> ModelStore::loadText(const std::string& text, const std::string& source) {
    try {
        install(parseModel(text, source));
        return std::nullopt;
    } catch (const ModelFailure& failure) {
        return failure.error();
    }
}

void ModelStore::useBuiltIn() {
    install(parseModel(kBuiltInModelJson, kBuiltInSource));
}

void ModelStore::install(Model model) {
    auto replacement = std::make_unique<Model>(std::move(model));
    std::unique_lock<std::shared_mutex> lock(mutex_);
    model_.swap(replacement);
}

} // namespace ksvsim::detail
