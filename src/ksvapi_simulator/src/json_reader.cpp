#include "json_reader.h"

#include "model.h"

namespace ksvsim::detail {
namespace {

// JSON pointer escaping of one reference token.
std::string escapeToken(const std::string& token) {
    std::string escaped;
    for (char c : token) {
        if (c == '~') {
            escaped += "~0";
        } else if (c == '/') {
            escaped += "~1";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::string linePlace(const std::string& text, std::size_t byte) {
    std::size_t line = 1;
    std::size_t column = 1;
    for (std::size_t i = 0; i + 1 < byte && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// nlohmann's message without its own prefix and position.
std::string syntaxMessage(const std::string& what) {
    const std::size_t colon = what.find(": ");
    return colon == std::string::npos ? what : what.substr(colon + 2);
}

} // namespace

nlohmann::json parseJsonText(const std::string& text, const std::string& source) {
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        throw ModelFailure({source, linePlace(text, error.byte), syntaxMessage(error.what())});
    } catch (const nlohmann::json::exception& error) {
        // A number too large for a double, for one: nlohmann gives no position for it.
        throw ModelFailure({source, "top level", syntaxMessage(error.what())});
    }
}

JsonNode::JsonNode(const nlohmann::json& value, std::string pointer, const std::string& source)
    : value_(value), pointer_(std::move(pointer)), source_(source) {}

void JsonNode::fail(const std::string& message) const {
    throw ModelFailure({source_, pointer_.empty() ? "top level" : pointer_, message});
}

std::string JsonNode::found() const {
    return std::string(", found ") + value_.type_name();
}

JsonNode JsonNode::element(std::size_t index) const {
    return JsonNode(value_.at(index), pointer_ + "/" + std::to_string(index), source_);
}

std::vector<JsonNode> JsonNode::elements() const {
    if (!value_.is_array()) {
        fail("expected an array" + found());
    }
    std::vector<JsonNode> nodes;
    nodes.reserve(value_.size());
    for (std::size_t i = 0; i < value_.size(); ++i) {
        nodes.push_back(element(i));
    }
    return nodes;
}

std::string JsonNode::text(std::size_t maxLength) const {
    if (!value_.is_string()) {
        fail("expected a string" + found());
    }
    const auto& value = value_.get_ref<const std::string&>();
    if (value.size() > maxLength) {
        fail("text \"" + value + "\" is longer than " + std::to_string(maxLength) + " characters");
    }
    return value;
}

bool JsonNode::boolean() const {
    if (!value_.is_boolean()) {
        fail("expected true or false" + found());
    }
    return value_.get<bool>();
}

uint64_t JsonNode::unsignedInteger(uint64_t max) const {
    const std::string range = "an integer from 0 to " + std::to_string(max);
    if (value_.is_number_unsigned()) {
        const auto value = value_.get<uint64_t>();
        if (value <= max) {
            return value;
        }
    }
    if (value_.is_number_integer()) {
        fail("value " + value_.dump() + " is out of range: expected " + range);
    }
    fail("expected " + range + found());
}

int64_t JsonNode::integer(int64_t min, int64_t max) const {
    const std::string range =
        "an integer from " + std::to_string(min) + " to " + std::to_string(max);
    if (value_.is_number_integer() &&
        (!value_.is_number_unsigned() || value_.get<uint64_t>() <= uint64_t(INT64_MAX))) {
        const auto value = value_.get<int64_t>();
        if (value >= min && value <= max) {
            return value;
        }
    }
    if (value_.is_number_integer()) {
        fail("value " + value_.dump() + " is out of range: expected " + range);
    }
    fail("expected " + range + found());
}

JsonObject::JsonObject(const JsonNode& node) : node_(node) {
    if (!node.value_.is_object()) {
        node.fail("expected an object" + node.found());
    }
}

std::optional<JsonNode> JsonObject::optional(const char* key) {
    const auto found = node_.value_.find(key);
    if (found == node_.value_.end()) {
        return std::nullopt;
    }
    read_.insert(key);
    return JsonNode(*found, node_.pointer_ + "/" + escapeToken(key), node_.source_);
}

JsonNode JsonObject::required(const char* key) {
    auto member = optional(key);
    if (!member) {
        node_.fail(std::string("missing member \"") + key + "\"");
    }
    return *member;
}

std::string JsonObject::text(const char* key, std::size_t maxLength, const std::string& fallback) {
    const auto member = optional(key);
    return member ? member->text(maxLength) : fallback;
}

bool JsonObject::boolean(const char* key, bool fallback) {
    const auto member = optional(key);
    return member ? member->boolean() : fallback;
}

uint64_t JsonObject::unsignedInteger(const char* key, uint64_t max, uint64_t fallback) {
    const auto member = optional(key);
    return member ? member->unsignedInteger(max) : fallback;
}

int64_t JsonObject::integer(const char* key, int64_t min, int64_t max, int64_t fallback) {
    const auto member = optional(key);
    return member ? member->integer(min, max) : fallback;
}

void JsonObject::finish() const {
    for (const auto& member : node_.value_.items()) {
        if (read_.count(member.key()) == 0) {
            JsonNode(member.value(), node_.pointer_ + "/" + escapeToken(member.key()),
                     node_.source_)
                .fail("unknown member \"" + member.key() + "\"");
        }
    }
}

} // namespace ksvsim::detail
