#ifndef KSV_CIMXML_DETAIL_OUTPUT_H
#define KSV_CIMXML_DETAIL_OUTPUT_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Char16.h>

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace ksv::cimxml::detail {

/// Appends to a text through a cursor into room made ahead in it, so that the many short pieces
/// of an element cost a copy each rather than a call that checks and grows the string. While a
/// session is open the text's size covers that room as well; when the outermost session closes,
/// the text ends where the writing did, and between sessions it is an ordinary string again.
class Output {
public:
    explicit Output(std::string& text) : _text(text) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    class Session {
    public:
        explicit Session(Output& output) : _output(output) { _output._enter(); }
        ~Session() { _output._leave(); }
        Session(const Session&) = delete;
        Session& operator=(const Session&) = delete;

    private:
        Output& _output;
    };

    /// At least `bytes` of room at the cursor; advance() past what was written there.
    char* room(std::size_t bytes) {
        if (std::size_t(_end - _at) < bytes)
            _grow(bytes);
        return _at;
    }
    void advance(char* to) { _at = to; }

    void put(char c) {
        *room(1) = c;
        ++_at;
    }
    void put(std::string_view text) {
        std::memcpy(room(text.size()), text.data(), text.size());
        _at += text.size();
    }
    /// A literal: its length is known here, so the copy is a few moves.
    template <std::size_t N>
    void put(const char (&text)[N]) {
        std::memcpy(room(N - 1), text, N - 1);
        _at += N - 1;
    }
    template <class Integer>
    void integer(Integer value) {
        char* to = room(24);
        _at = std::to_chars(to, to + 24, value).ptr;
    }

    /// UTF-16 text, or UTF-8 text, as escaped UTF-8 (see appendEscaped()).
    void escaped(const Pegasus::Char16* units, std::size_t count);
    void escaped(std::string_view utf8);

    /// What has been written since `start` (a length()), within one session.
    std::size_t length() const { return std::size_t(_at - _text.data()); }
    std::string_view since(std::size_t start) const {
        return std::string_view(_text.data() + start, length() - start);
    }

private:
    void _enter() {
        if (_sessions++ == 0) {
            _sessionStart = _text.size();
            _at = _end = _text.data() + _sessionStart;
        }
    }
    void _leave() {
        if (--_sessions == 0) {
            _lastSessionLength = length() - _sessionStart;
            _text.resize(length());
        }
    }
    void _grow(std::size_t bytes);

    std::string& _text;
    char* _at = nullptr;
    char* _end = nullptr;
    unsigned _sessions = 0;
    std::size_t _sessionStart = 0;
    // The elements of a response are much alike: room for one as long as the last is made at
    // once.
    std::size_t _lastSessionLength = 0;
};

} // namespace ksv::cimxml::detail

#endif
