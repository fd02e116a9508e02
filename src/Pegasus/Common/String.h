#ifndef Pegasus_String_h
#define Pegasus_String_h

#include <atomic>
#include <iostream>
#include <cstdarg>
#include <string>
#include <vector>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class String;

// A UTF-8 copy of a String, valid for as long as the CString lives.
class PEGASUS_COMMON_LINKAGE CString {
public:
    CString();
    CString(const CString& cstr);
    ~CString();
    CString& operator=(const CString& cstr);
    operator const char*() const;

private:
    explicit CString(std::string utf8);
    friend class String;
    std::string _utf8;
};

// The CIM string type: a sequence of UTF-16 code units. Text given as
// const char* is taken to be UTF-8. Case-insensitive operations fold only
// the ASCII letters.
class PEGASUS_COMMON_LINKAGE String {
public:
    static const String EMPTY;

    String();
    // Copies share the text until one of them changes it. Inline, as the end is: texts are copied
    // and ended by the hundred per instance a provider builds.
    String(const String& str) : _rep(str._rep) { _retain(_rep); }
    String(String&& str) noexcept : _rep(str._rep) { str._rep = _emptyRep(); }
    String(const String& str, Uint32 n);
    String(const Char16* str);
    String(const Char16* str, Uint32 n);
    String(const char* str);
    String(const char* str, Uint32 n);
    ~String() {
        if (_rep != _emptyRep())
            _release(_rep);
    }

    String& operator=(const String& str);
    String& operator=(String&& str) noexcept;
    String& assign(const String& str);
    String& assign(const Char16* str);
    String& assign(const Char16* str, Uint32 n);
    String& assign(const char* str);
    String& assign(const char* str, Uint32 n);

    void clear();
    void reserveCapacity(Uint32 capacity);
    // Inline: the encoders and comparisons call these once per code unit or name.
    Uint32 size() const { return _length(); }
    const Char16* getChar16Data() const { return _unitsOf(_rep); }
    CString getCString() const;

    Char16& operator[](Uint32 index);
    const Char16 operator[](Uint32 index) const;

    String& append(const Char16& c);
    String& append(const Char16* str, Uint32 n);
    String& append(const String& str);

    void remove(Uint32 index, Uint32 size = PEG_NOT_FOUND);
    String subString(Uint32 index, Uint32 n = PEG_NOT_FOUND) const;

    Uint32 find(Char16 c) const;
    Uint32 find(Uint32 index, Char16 c) const;
    Uint32 find(const String& s) const;
    Uint32 reverseFind(Char16 c) const;

    void toLower();

    PEGASUS_FORMAT(2, 3)
    void appendPrintf(const char* format, ...);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    void toUpper();
#endif

    static int compare(const String& s1, const String& s2, Uint32 n);
    static int compare(const String& s1, const String& s2);
    static int compareNoCase(const String& s1, const String& s2);
    static Boolean equal(const String& s1, const String& s2);
    static Boolean equalNoCase(const String& s1, const String& s2);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    String(const String& s1, const String& s2);
    String(const String& s1, const char* s2);
    String(const char* s1, const String& s2);
    String& operator=(const char* str);
    Uint32 find(const char* s) const;
    static Boolean equal(const String& s1, const char* s2);
    static int compare(const String& s1, const char* s2);
    String& append(const char* str);
    String& append(const char* str, Uint32 size);
    static Boolean equalNoCase(const String& s1, const char* s2);
#endif

private:
    friend class StringReserve;

    // The text's header; its code units follow it, then a terminating null.
    struct Rep {
        std::atomic<Uint32> refs;
        Uint32 size;
        Uint32 capacity;
    };
    struct EmptyRep {
        Rep header;
        Char16 null;
    };
    // Shared by every empty String, never counted nor freed.
    static EmptyRep _empty;

    static Char16* _unitsOf(Rep* rep) {
        return reinterpret_cast<Char16*>(rep + 1);
    }
    static Rep* _allocate(Uint32 capacity);
    static Rep* _emptyRep() {
        return &_empty.header;
    }
    static void _retain(Rep* rep) {
        if (rep != _emptyRep())
            rep->refs.fetch_add(1, std::memory_order_relaxed);
    }
    static void _release(Rep* rep);

    Char16* _units() {
        return _unitsOf(_rep);
    }
    Uint32 _length() const {
        return _rep->size;
    }
    // Makes the text this String's own with room for capacity units.
    void _reserveOwn(Uint32 capacity);
    void _reserveToAppend(Uint32 n);
    void _setLength(Uint32 n);
    void _appendUtf8(const char* str, size_t n);

    Rep* _rep;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator==(const String& str1, const char* str2);
PEGASUS_COMMON_LINKAGE Boolean operator==(const char* str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE PEGASUS_STD(ostream) & operator<<(PEGASUS_STD(ostream) & os,
                                                         const String& str);
PEGASUS_COMMON_LINKAGE String operator+(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator<(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator<=(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator>(const String& str1, const String& str2);
PEGASUS_COMMON_LINKAGE Boolean operator>=(const String& str1, const String& str2);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
PEGASUS_COMMON_LINKAGE Boolean operator!=(const String& s1, const char* s2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const char* s1, const String& s2);
PEGASUS_COMMON_LINKAGE Boolean operator<(const String& s1, const char* s2);
PEGASUS_COMMON_LINKAGE Boolean operator<(const char* s1, const String& s2);
PEGASUS_COMMON_LINKAGE Boolean operator>(const String& s1, const char* s2);
PEGASUS_COMMON_LINKAGE Boolean operator>(const char* s1, const String& s2);
PEGASUS_COMMON_LINKAGE Boolean operator<=(const String& s1, const char* s2);
PEGASUS_COMMON_LINKAGE Boolean operator<=(const char* s1, const String& s2);
PEGASUS_COMMON_LINKAGE Boolean operator>=(const String& s1, const char* s2);
PEGASUS_COMMON_LINKAGE Boolean operator>=(const char* s1, const String& s2);
PEGASUS_COMMON_LINKAGE String operator+(const String& s1, const char* s2);
PEGASUS_COMMON_LINKAGE String operator+(const char* s1, const String& s2);
#endif

PEGASUS_NAMESPACE_END

#endif /* Pegasus_String_h */
