#ifndef Pegasus_CIMDateTime_h
#define Pegasus_CIMDateTime_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

// A CIM datetime: either a time stamp "yyyymmddhhmmss.mmmmmmsutc" (s is '+'
// or '-', utc the offset in minutes) or an interval "ddddddddhhmmss.mmmmmm:000".
// Trailing fields may be replaced by '*' wildcards. A default-constructed
// value is the zero interval.
class PEGASUS_COMMON_LINKAGE CIMDateTime {
public:
#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    static const Uint32 WILDCARD;
#endif

    CIMDateTime();
    CIMDateTime(const CIMDateTime& x);
    // Throws InvalidDateTimeFormatException or DateTimeOutOfRangeException.
    CIMDateTime(const String& str);
    // Microseconds since 0000-01-01 00:00 (a time stamp at UTC), or the length
    // of an interval.
    CIMDateTime(Uint64 usec, Boolean isInterval);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    CIMDateTime(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes, Uint32 seconds,
                Uint32 microseconds, Uint32 numSignificantMicrosecondDigits, Sint32 utcOffset);
    CIMDateTime(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds, Uint32 microseconds,
                Uint32 numSignificantMicrosecondDigits);
#endif

    ~CIMDateTime();

    CIMDateTime& operator=(const CIMDateTime& x);

    String toString() const;
    void set(const String& str);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    void setTimeStamp(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes,
                      Uint32 seconds, Uint32 microseconds, Uint32 numSignificantMicrosecondDigits,
                      Sint32 utcOffset);
    void setInterval(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds, Uint32 microseconds,
                     Uint32 numSignificantMicrosecondDigits);
#endif

    // Resets to the zero interval.
    void clear();

    // The local time with the local UTC offset.
    static CIMDateTime getCurrentDateTime();
    // finishTime - startTime in microseconds; both must be time stamps.
    static Sint64 getDifference(CIMDateTime startTime, CIMDateTime finishTime);

    Boolean isInterval() const;
    Boolean isInterval();
#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean isTimeStamp() const;
#endif

    Boolean equal(const CIMDateTime& x) const;
    // Time stamps count from 0000-01-01 00:00 UTC.
    Uint64 toMicroSeconds() const;

    CIMDateTime operator+(const CIMDateTime& x) const;
    CIMDateTime& operator+=(const CIMDateTime& x);
    CIMDateTime operator-(const CIMDateTime& x) const;
    CIMDateTime& operator-=(const CIMDateTime& x);
    CIMDateTime operator*(Uint64 x) const;
    CIMDateTime& operator*=(Uint64 x);
    CIMDateTime operator/(Uint64 num) const;
    CIMDateTime& operator/=(Uint64 num);
    Uint64 operator/(const CIMDateTime& cdt) const;

    Boolean operator<(const CIMDateTime& x) const;
    Boolean operator<=(const CIMDateTime& x) const;
    Boolean operator>(const CIMDateTime& x) const;
    Boolean operator>=(const CIMDateTime& x) const;
    Boolean operator!=(const CIMDateTime& x) const;

private:
    int _compare(const CIMDateTime& x) const;
    CIMDateTime _normalized() const;
    String _format() const;

    // The fields as written, in microseconds; time stamps count from
    // 0000-01-01 00:00 in their own time zone.
    Uint64 _usec = 0;
    // Size of the UTC offset in minutes; _sign gives its direction.
    Uint32 _utcOffset = 0;
    // '+' or '-' for time stamps, ':' for intervals.
    char _sign = ':';
    // How many of the 20 characters before the sign, counted from the sign
    // and not counting the '.', are wildcards.
    Uint16 _numWildcards = 0;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMDateTime& x, const CIMDateTime& y);

PEGASUS_NAMESPACE_END

#endif /* Pegasus_CIMDateTime_h */
