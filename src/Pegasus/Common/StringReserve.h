#ifndef Pegasus_StringReserve_h
#define Pegasus_StringReserve_h

// Internal to pegcommon: the names made from literals use it.

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

/**
    One text that its owner hands out copies of over and over, on one thread: the references of
    the copies are counted in bulk, so that a copy takes no atomic step of its own. The references
    not handed out are given back when the reserve ends or takes another text.
*/
class StringReserve {
public:
    StringReserve() = default;
    explicit StringReserve(String text);
    StringReserve(StringReserve&& other) noexcept;
    StringReserve& operator=(StringReserve&& other) noexcept;
    ~StringReserve();

    const String& text() const { return _text; }
    /** A copy of the text, which its holder releases as any other. */
    String copy() {
        String copy;
        if (_text._rep == String::_emptyRep())
            return copy;
        if (_prepaid == 0)
            _takeReferences();
        _prepaid--;
        copy._rep = _text._rep;
        return copy;
    }

private:
    void _takeReferences();
    void _giveBack() noexcept;

    String _text;
    Uint32 _prepaid = 0;
};

PEGASUS_NAMESPACE_END

#endif
