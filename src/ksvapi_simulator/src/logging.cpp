#include "logging.h"

#include "ksvapi.h"

#include <syslog.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <mutex>

namespace ksvsim::detail {
namespace {

constexpr int kDefaultMaxLevel = KSV_LOG_WARNING;

enum class SinkKind { None, StandardError, File, Syslog };

class Logger {
public:
    Logger() { applyEnvironment(); }

    bool wanted(int level) const { return capturing_.load() || level <= maxLevel_.load(); }

    void write(int level, const std::string& text) {
        if (capturing_.load()) {
            std::lock_guard<std::mutex> lock(captureMutex_);
            captured_.push_back({level, text});
        }
        if (level <= maxLevel_.load()) {
            std::lock_guard<std::mutex> lock(sinkMutex_);
            writeToSink(level, text);
        }
    }

    void setCapture(bool enabled) { capturing_.store(enabled); }

    std::vector<LogLine> captured() const {
        std::lock_guard<std::mutex> lock(captureMutex_);
        return captured_;
    }

    void clearCaptured() {
        std::lock_guard<std::mutex> lock(captureMutex_);
        captured_.clear();
    }

    void setMaxLevel(int maxLevel) { maxLevel_.store(maxLevel); }

    bool sinkIsStandardError() {
        std::lock_guard<std::mutex> lock(sinkMutex_);
        return sinkKind_ == SinkKind::StandardError;
    }

    std::optional<std::string> setSink(const std::string& sink) {
        constexpr const char filePrefix[] = "file:";
        if (sink == "stderr") {
            replaceSink(SinkKind::StandardError, nullptr);
        } else if (sink == "syslog") {
            replaceSink(SinkKind::Syslog, nullptr);
        } else if (sink == "none") {
            replaceSink(SinkKind::None, nullptr);
        } else if (sink.rfind(filePrefix, 0) == 0 && sink.size() > sizeof filePrefix - 1) {
            const std::string path = sink.substr(sizeof filePrefix - 1);
            std::FILE* file = std::fopen(path.c_str(), "a");
            if (file == nullptr) {
                return "cannot open log file " + path;
            }
            replaceSink(SinkKind::File, file);
        } else {
            return "unknown log sink \"" + sink +
                   "\" (expected stderr, syslog, none or file:<path>)";
        }
        return std::nullopt;
    }

    void applyEnvironment() {
        const char* sink = std::getenv("KSV_LOG_SINK");
        const auto sinkError = setSink(sink != nullptr && *sink != '\0' ? sink : "stderr");
        if (sinkError) {
            setSink("stderr");
            write(KSV_LOG_ERROR, "KSV_LOG_SINK: " + *sinkError + "\n");
        }
        const char* level = std::getenv("KSV_LOG_LEVEL");
        const auto maxLevel = parseLevel(level);
        maxLevel_.store(maxLevel.value_or(kDefaultMaxLevel));
        if (!maxLevel) {
            write(KSV_LOG_ERROR, std::string("KSV_LOG_LEVEL: not a level: ") + level + "\n");
        }
    }

private:
    // Nothing for text that is no number; an unset variable is the default.
    static std::optional<int> parseLevel(const char* text) {
        if (text == nullptr || *text == '\0') {
            return kDefaultMaxLevel;
        }
        char* end = nullptr;
        const long level = std::strtol(text, &end, 10);
        if (*end != '\0' || level < 0 || level > 100) {
            return std::nullopt;
        }
        return static_cast<int>(level);
    }

    void replaceSink(SinkKind kind, std::FILE* file) {
        std::lock_guard<std::mutex> lock(sinkMutex_);
        if (file_ != nullptr) {
            std::fclose(file_);
        }
        if (sinkKind_ == SinkKind::Syslog && kind != SinkKind::Syslog) {
            closelog();
        }
        if (kind == SinkKind::Syslog && sinkKind_ != SinkKind::Syslog) {
            openlog("ksvapi", LOG_PID, LOG_DAEMON);
        }
        sinkKind_ = kind;
        file_ = file;
    }

    void writeToSink(int level, const std::string& text) {
        const char* newline = !text.empty() && text.back() == '\n' ? "" : "\n";
        switch (sinkKind_) {
        case SinkKind::None:
            break;
        case SinkKind::StandardError:
            std::fprintf(stderr, "ksvapi[%d] %s%s", level, text.c_str(), newline);
            break;
        case SinkKind::File:
            std::fprintf(file_, "%s [%d] %s%s", timestamp().c_str(), level, text.c_str(), newline);
            std::fflush(file_);
            break;
        case SinkKind::Syslog:
            syslog(syslogPriority(level), "%s", text.c_str());
            break;
        }
    }

    static int syslogPriority(int level) {
        switch (level) {
        case KSV_LOG_FATAL:
            return LOG_CRIT;
        case KSV_LOG_ERROR:
            return LOG_ERR;
        case KSV_LOG_WARNING:
            return LOG_WARNING;
        default:
            return LOG_DEBUG;
        }
    }

    static std::string timestamp() {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        char text[32];
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
        return text;
    }

    std::atomic<bool> capturing_{false};
    std::atomic<int> maxLevel_{kDefaultMaxLevel};
    mutable std::mutex captureMutex_;
    std::vector<LogLine> captured_;
    std::mutex sinkMutex_;
    SinkKind sinkKind_ = SinkKind::None;
    std::FILE* file_ = nullptr;
};

Logger& logger() {
    // Never destroyed: server threads may still log while the process exits.
    static Logger* instance = new Logger;
    return *instance;
}

std::string format(const char* format, va_list args) {
    va_list measure;
    va_copy(measure, args);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length < 0) {
        return format;
    }
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, args);
    text.pop_back();
    return text;
}

} // namespace

void logLine(int level, const char* formatText, va_list args) {
    if (formatText == nullptr || !logger().wanted(level)) {
        return;
    }
    logger().write(level, format(formatText, args));
}

void logText(int level, const std::string& text) {
    if (logger().wanted(level)) {
        logger().write(level, text);
    }
}

void setCapture(bool enabled) {
    logger().setCapture(enabled);
}

std::vector<LogLine> captured() {
    return logger().captured();
}

void clearCaptured() {
    logger().clearCaptured();
}

void setMaxLevel(int maxLevel) {
    logger().setMaxLevel(maxLevel);
}

bool logsToStandardError() {
    return logger().sinkIsStandardError();
}

std::optional<std::string> setSink(const std::string& sink) {
    return logger().setSink(sink);
}

void configureLoggingFromEnvironment() {
    logger().applyEnvironment();
}

} // namespace ksvsim::detail
