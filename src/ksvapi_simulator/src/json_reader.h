// Typed, strict access to a JSON document that names the place of every
// error as a JSON pointer.
#ifndef KSVSIM_JSON_READER_H
#define KSVSIM_JSON_READER_H

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ksvsim::detail {

// Parses text; a syntax error throws ModelFailure naming line and column.
nlohmann::json parseJsonText(const std::string& text, const std::string& source);

class JsonNode {
public:
    JsonNode(const nlohmann::json& value, std::string pointer, const std::string& source);

    [[noreturn]] void fail(const std::string& message) const;

    const std::string& pointer() const { return pointer_; }
    bool isNull() const { return value_.is_null(); }
    bool isString() const { return value_.is_string(); }
    const nlohmann::json& value() const { return value_; }

    JsonNode element(std::size_t index) const;
    std::vector<JsonNode> elements() const;
    std::string text(std::size_t maxLength) const;
    bool boolean() const;
    uint64_t unsignedInteger(uint64_t max) const;
    int64_t integer(int64_t min, int64_t max) const;

private:
    friend class JsonObject;

    std::string found() const;

    const nlohmann::json& value_;
    std::string pointer_;
    const std::string& source_;
};

// An object whose members are read one by one; finish() refuses members
// that were never read, so that misspelt names do not pass unnoticed.
class JsonObject {
public:
    explicit JsonObject(const JsonNode& node);

    const JsonNode& node() const { return node_; }

    JsonNode required(const char* key);
    std::optional<JsonNode> optional(const char* key);

    std::string text(const char* key, std::size_t maxLength, const std::string& fallback);
    bool boolean(const char* key, bool fallback);
    uint64_t unsignedInteger(const char* key, uint64_t max, uint64_t fallback);
    int64_t integer(const char* key, int64_t min, int64_t max, int64_t fallback);

    void finish() const;

private:
    JsonNode node_;
    std::set<std::string> read_;
};

} // namespace ksvsim::detail

#endif // KSVSIM_JSON_READER_H
