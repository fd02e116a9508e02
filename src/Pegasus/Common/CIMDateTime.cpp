#include <Pegasus/Common/MessageLoader.h>
#include <Pegasus/Common/CIMDateTime.h>

#include <sys/time.h>
#include <time.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

namespace {

const Uint64 SECOND = 1000000;
const Uint64 MINUTE = 60 * SECOND;
const Uint64 HOUR = 60 * MINUTE;
const Uint64 DAY = 24 * HOUR;
// 0000-01-01 through 9999-12-31 of the proleptic Gregorian calendar.
const Uint64 TEN_THOUSAND_YEARS = 3652425 * DAY;
const Uint64 HUNDRED_MILLION_DAYS = 100000000 * DAY;
// Days from 0000-01-01 to 1970-01-01.
const Sint64 DAYS_TO_POSIX_EPOCH = 719528;
const size_t TEXT_LENGTH = 25;
const size_t SIGN_POSITION = 21;
const size_t LAST_WILDCARD_POSITION = 20;
const size_t DOT_POSITION = 14;

[[noreturn]] void throwOutOfRange(const char* reason) {
    MessageLoaderParms parms("Common.Exception.DATETIME_OUT_OF_RANGE_EXCEPTION", reason);
    throw DateTimeOutOfRangeException(parms);
}

bool isLeapYear(Uint32 year) {
    return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
}

Uint32 daysInMonth(Uint32 year, Uint32 month) {
    static const Uint8 days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return (month == 2 && isLeapYear(year)) ? 29 : days[month - 1];
}

// Days from 0000-01-01 to the given date (proleptic Gregorian calendar),
// counted in 400-year eras that begin on March 1st.
Uint64 daysFromCivil(Uint32 year, Uint32 month, Uint32 day) {
    const Sint64 y = Sint64(year) - (month <= 2 ? 1 : 0);
    const Sint64 era = (y >= 0 ? y : y - 399) / 400;
    const Sint64 yearOfEra = y - era * 400;
    const Sint64 shiftedMonth = month > 2 ? month - 3 : month + 9;
    const Sint64 dayOfYear = (153 * shiftedMonth + 2) / 5 + day - 1;
    const Sint64 dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return Uint64(era * 146097 + dayOfEra + 60);
}

struct CivilDate {
    Uint32 year;
    Uint32 month;
    Uint32 day;
};

CivilDate civilFromDays(Uint64 days) {
    const Sint64 shifted = Sint64(days) - 60;
    const Sint64 era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
    const Sint64 dayOfEra = shifted - era * 146097;
    const Sint64 yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const Sint64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const Sint64 shiftedMonth = (5 * dayOfYear + 2) / 153;
    const Uint32 day = Uint32(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
    const Uint32 month = Uint32(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
    const Sint64 year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
    return {Uint32(year), month, day};
}

void appendDigits(String& out, Uint64 value, int width) {
    char digits[24];
    for (int i = width - 1; i >= 0; i--) {
        digits[i] = char('0' + value % 10);
        value /= 10;
    }
    out.append(String(digits, Uint32(width)));
}

// Reads the fixed-width fields of the text form from left to right. Once a
// field is all wildcards, every later field must be all wildcards too.
class FieldReader {
public:
    explicit FieldReader(const String& text) : _text(text) {}

    Uint32 field(size_t width) {
        if (_allWildcards(width)) {
            _position += width;
            _sawWildcards = true;
            return CIMDateTime::WILDCARD;
        }
        if (_sawWildcards)
            throw InvalidDateTimeFormatException();
        return number(width);
    }

    Uint32 number(size_t width) {
        Uint32 value = 0;
        for (size_t i = 0; i < width; i++) {
            const Uint16 c = _text[Uint32(_position++)];
            if (c < '0' || c > '9')
                throw InvalidDateTimeFormatException();
            value = value * 10 + (c - '0');
        }
        return value;
    }

    // Microseconds may keep leading digits and end in wildcards.
    Uint32 microseconds(Uint32& significantDigits) {
        if (_sawWildcards && _text[Uint32(_position)] != '*')
            throw InvalidDateTimeFormatException();
        significantDigits = 0;
        while (significantDigits < 6 && _text[Uint32(_position + significantDigits)] != '*')
            significantDigits++;
        const Uint32 leading = number(significantDigits);
        if (!_allWildcards(6 - significantDigits))
            throw InvalidDateTimeFormatException();
        _position += 6 - significantDigits;
        static const Uint32 scale[] = {0, 100000, 10000, 1000, 100, 10, 1};
        return leading * scale[significantDigits];
    }

    void expect(char c) {
        if (_text[Uint32(_position++)] != c)
            throw InvalidDateTimeFormatException();
    }

private:
    bool _allWildcards(size_t width) const {
        for (size_t i = 0; i < width; i++) {
            if (_text[Uint32(_position + i)] != '*')
                return false;
        }
        return true;
    }

    const String& _text;
    size_t _position = 0;
    bool _sawWildcards = false;
};

// Like strcmp over the 25 characters, but a wildcard matches anything.
int compareIgnoringWildcards(const String& a, const String& b) {
    for (Uint32 i = 0; i < TEXT_LENGTH; i++) {
        if (a[i] == '*' || b[i] == '*')
            continue;
        const int r = int(a[i]) - int(b[i]);
        if (r)
            return r;
    }
    return 0;
}

} // namespace

const Uint32 CIMDateTime::WILDCARD = Uint32(-1);

CIMDateTime::CIMDateTime() = default;

CIMDateTime::CIMDateTime(const CIMDateTime& x) = default;

CIMDateTime::CIMDateTime(const String& str) {
    set(str);
}

CIMDateTime::CIMDateTime(Uint64 usec, Boolean isInterval) {
    if (!isInterval && usec >= TEN_THOUSAND_YEARS)
        throwOutOfRange("Cannot create a CIMDateTime time stamp beyond the year 10,000");
    if (isInterval && usec >= HUNDRED_MILLION_DAYS)
        throwOutOfRange("Cannot create a CIMDateTime interval greater than 100 million days");
    _usec = usec;
    _sign = isInterval ? ':' : '+';
}

CIMDateTime::CIMDateTime(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes,
                         Uint32 seconds, Uint32 microseconds,
                         Uint32 numSignificantMicrosecondDigits, Sint32 utcOffset) {
    setTimeStamp(year, month, day, hours, minutes, seconds, microseconds,
                 numSignificantMicrosecondDigits, utcOffset);
}

CIMDateTime::CIMDateTime(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds,
                         Uint32 microseconds, Uint32 numSignificantMicrosecondDigits) {
    setInterval(days, hours, minutes, seconds, microseconds, numSignificantMicrosecondDigits);
}

CIMDateTime::~CIMDateTime() = default;

CIMDateTime& CIMDateTime::operator=(const CIMDateTime& x) = default;

void CIMDateTime::clear() {
    *this = CIMDateTime();
}

void CIMDateTime::set(const String& str) {
    clear();
    if (str.size() != TEXT_LENGTH)
        throw InvalidDateTimeFormatException();
    const Uint16 sign = str[SIGN_POSITION];
    FieldReader reader(str);
    Uint32 significantDigits = 0;
    if (sign == ':') {
        const Uint32 days = reader.field(8);
        const Uint32 hours = reader.field(2);
        const Uint32 minutes = reader.field(2);
        const Uint32 seconds = reader.field(2);
        reader.expect('.');
        const Uint32 microseconds = reader.microseconds(significantDigits);
        reader.expect(':');
        if (reader.number(3) != 0)
            throw InvalidDateTimeFormatException();
        setInterval(days, hours, minutes, seconds, microseconds, significantDigits);
    } else if (sign == '+' || sign == '-') {
        const Uint32 year = reader.field(4);
        const Uint32 month = reader.field(2);
        const Uint32 day = reader.field(2);
        const Uint32 hours = reader.field(2);
        const Uint32 minutes = reader.field(2);
        const Uint32 seconds = reader.field(2);
        reader.expect('.');
        const Uint32 microseconds = reader.microseconds(significantDigits);
        reader.expect(char(sign));
        const Sint32 offset = Sint32(reader.number(3));
        setTimeStamp(year, month, day, hours, minutes, seconds, microseconds, significantDigits,
                     sign == '+' ? offset : -offset);
    } else {
        throw InvalidDateTimeFormatException();
    }
}

void CIMDateTime::setTimeStamp(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes,
                               Uint32 seconds, Uint32 microseconds,
                               Uint32 numSignificantMicrosecondDigits, Sint32 utcOffset) {
    clear();
    // The most significant wildcarded field decides how far the wildcards
    // reach; a wildcarded field counts as its lowest value.
    Uint16 numWildcards = 0;
    const auto wildcard = [&numWildcards](Uint32& field, Uint32 lowest, Uint16 reach) {
        if (field != WILDCARD)
            return false;
        field = lowest;
        if (!numWildcards)
            numWildcards = reach;
        return true;
    };
    if (!wildcard(year, 0, 20) && year > 9999)
        throwOutOfRange("year is greater than 9999");
    if (!wildcard(month, 1, 16) && (month < 1 || month > 12))
        throwOutOfRange("illegal month number");
    if (!wildcard(day, 1, 14) && (day < 1 || day > daysInMonth(year, month)))
        throwOutOfRange("illegal day number");
    if (!wildcard(hours, 0, 12) && hours > 23)
        throwOutOfRange("illegal hours number ");
    if (!wildcard(minutes, 0, 10) && minutes > 59)
        throwOutOfRange("illegal minutes number ");
    if (!wildcard(seconds, 0, 8) && seconds > 59)
        throwOutOfRange("illegal seconds number ");
    if (numSignificantMicrosecondDigits > 6)
        throwOutOfRange("bad numSignificantMicrosecondDigits (must fall between 0 and 6)");
    if (microseconds > 999999)
        throwOutOfRange("microseconds number must be less than 999999");
    if (utcOffset < -999 || utcOffset > 999)
        throwOutOfRange("illegal utcOffset");

    _usec = microseconds + seconds * SECOND + minutes * MINUTE + hours * HOUR +
            daysFromCivil(year, month, day) * DAY;
    _sign = utcOffset < 0 ? '-' : '+';
    _utcOffset = Uint32(utcOffset < 0 ? -utcOffset : utcOffset);
    _numWildcards = numWildcards ? numWildcards : Uint16(6 - numSignificantMicrosecondDigits);
}

void CIMDateTime::setInterval(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds,
                              Uint32 microseconds, Uint32 numSignificantMicrosecondDigits) {
    clear();
    Uint16 numWildcards = 0;
    const auto wildcard = [&numWildcards](Uint32& field, Uint32 lowest, Uint16 reach) {
        if (field != WILDCARD)
            return false;
        field = lowest;
        if (!numWildcards)
            numWildcards = reach;
        return true;
    };
    if (!wildcard(days, 1, 20) && days > 99999999)
        throwOutOfRange("illegal days number (must be less than 100000000");
    if (!wildcard(hours, 0, 12) && hours > 23)
        throwOutOfRange("illegal hours number ");
    if (!wildcard(minutes, 0, 10) && minutes > 59)
        throwOutOfRange("illegal minutes number ");
    if (!wildcard(seconds, 0, 8) && seconds > 59)
        throwOutOfRange("illegal seconds number ");
    if (numSignificantMicrosecondDigits > 6)
        throwOutOfRange("bad numSignificantMicrosecondDigits (must fall between 0 and 6)");
    if (microseconds > 999999)
        throwOutOfRange("microseconds number must be less than 999999");

    _usec = microseconds + seconds * SECOND + minutes * MINUTE + hours * HOUR + days * DAY;
    _sign = ':';
    _utcOffset = 0;
    _numWildcards = numWildcards ? numWildcards : Uint16(6 - numSignificantMicrosecondDigits);
}

String CIMDateTime::toString() const {
    return _format();
}

String CIMDateTime::_format() const {
    String text;
    const Uint64 days = _usec / DAY;
    if (_sign == ':') {
        appendDigits(text, days, 8);
    } else {
        const CivilDate date = civilFromDays(days);
        appendDigits(text, date.year, 4);
        appendDigits(text, date.month, 2);
        appendDigits(text, date.day, 2);
    }
    appendDigits(text, (_usec / HOUR) % 24, 2);
    appendDigits(text, (_usec / MINUTE) % 60, 2);
    appendDigits(text, (_usec / SECOND) % 60, 2);
    text.append(Char16('.'));
    appendDigits(text, _usec % SECOND, 6);
    text.append(Char16(Uint16(_sign)));
    appendDigits(text, _utcOffset, 3);

    Uint32 remaining = _numWildcards;
    for (Uint32 i = LAST_WILDCARD_POSITION + 1; i-- > 0 && remaining > 0;) {
        if (i == DOT_POSITION)
            continue;
        text[i] = '*';
        remaining--;
    }
    return text;
}

// The same moment at UTC. Wildcarded hours or minutes take no part in the
// shift, since their value is unknown.
CIMDateTime CIMDateTime::_normalized() const {
    CIMDateTime result(*this);
    if (_sign == ':')
        return result;
    Uint64 shift = 0;
    if (_numWildcards < 10)
        shift = _utcOffset * MINUTE;
    else if (_numWildcards < 12)
        shift = (_utcOffset / 60) * HOUR;
    result._usec = _sign == '+' ? _usec - shift : _usec + shift;
    result._utcOffset = 0;
    result._sign = '+';
    return result;
}

int CIMDateTime::_compare(const CIMDateTime& x) const {
    if (isInterval() != x.isInterval()) {
        MessageLoaderParms parms("Common.CIMDateTime.INVALID_OPERATION_COMP_DIF",
                                 "Trying to compare CIMDateTime objects of differing types");
        throw TypeMismatchException(parms);
    }
    if (_numWildcards == 0 && x._numWildcards == 0) {
        const Uint64 mine = toMicroSeconds();
        const Uint64 theirs = x.toMicroSeconds();
        return mine < theirs ? -1 : (mine > theirs ? 1 : 0);
    }
    return compareIgnoringWildcards(_normalized()._format(), x._normalized()._format());
}

CIMDateTime CIMDateTime::getCurrentDateTime() {
    struct timeval now;
    gettimeofday(&now, nullptr);
    const time_t seconds = now.tv_sec;
    struct tm local;
    localtime_r(&seconds, &local);
    const Sint64 minutesEast = Sint64(local.tm_gmtoff) / 60;

    CIMDateTime result;
    result._usec = Uint64(DAYS_TO_POSIX_EPOCH) * DAY +
                   Uint64(Sint64(seconds) + minutesEast * 60) * SECOND + Uint64(now.tv_usec);
    result._sign = minutesEast < 0 ? '-' : '+';
    result._utcOffset = Uint32(minutesEast < 0 ? -minutesEast : minutesEast);
    return result;
}

Sint64 CIMDateTime::getDifference(CIMDateTime startTime, CIMDateTime finishTime) {
    if (startTime.isInterval() != finishTime.isInterval())
        throw InvalidDateTimeFormatException();
    return Sint64(finishTime.toMicroSeconds() - startTime.toMicroSeconds());
}

Boolean CIMDateTime::isInterval() const {
    return _sign == ':';
}

Boolean CIMDateTime::isInterval() {
    return _sign == ':';
}

Boolean CIMDateTime::isTimeStamp() const {
    return _sign != ':';
}

Boolean CIMDateTime::equal(const CIMDateTime& x) const {
    return _compare(x) == 0;
}

Uint64 CIMDateTime::toMicroSeconds() const {
    return _normalized()._usec;
}

CIMDateTime CIMDateTime::operator+(const CIMDateTime& x) const {
    CIMDateTime result(*this);
    return result += x;
}

CIMDateTime& CIMDateTime::operator+=(const CIMDateTime& x) {
    if (!x.isInterval())
        throw TypeMismatchException();
    _usec += x._usec;
    return *this;
}

// A time stamp minus an interval stays a time stamp in the same zone; any
// other difference is an interval.
CIMDateTime CIMDateTime::operator-(const CIMDateTime& x) const {
    if (isInterval() && !x.isInterval())
        throw TypeMismatchException();
    const Uint64 mine = toMicroSeconds();
    const Uint64 theirs = x.toMicroSeconds();
    if (mine < theirs)
        throwOutOfRange("Result of subtracting two CIMDateTimes would be negative.");
    if (isInterval() == x.isInterval())
        return CIMDateTime(mine - theirs, true);
    CIMDateTime result(mine - theirs, false);
    result._sign = _sign;
    result._utcOffset = _utcOffset;
    result._numWildcards = _numWildcards;
    return result;
}

CIMDateTime& CIMDateTime::operator-=(const CIMDateTime& x) {
    if (!x.isInterval())
        throw TypeMismatchException();
    if (_usec < x._usec)
        throwOutOfRange("Result of subtracting two CIMDateTimes would be negative.");
    _usec -= x._usec;
    return *this;
}

CIMDateTime CIMDateTime::operator*(Uint64 x) const {
    CIMDateTime result(*this);
    return result *= x;
}

CIMDateTime& CIMDateTime::operator*=(Uint64 x) {
    if (!isInterval())
        throw TypeMismatchException();
    _usec *= x;
    return *this;
}

CIMDateTime CIMDateTime::operator/(Uint64 num) const {
    CIMDateTime result(*this);
    return result /= num;
}

CIMDateTime& CIMDateTime::operator/=(Uint64 num) {
    if (!isInterval()) {
        MessageLoaderParms parms("Common.CIMDateTime.INVALID_OPERATION_DIV_INT",
                                 "Can not divide a TimeStamp by an integer");
        throw TypeMismatchException(parms);
    }
    if (num == 0) {
        MessageLoaderParms parms("Common.CIMDateTime.INVALID_OPERATION_DIV_ZERO",
                                 "Can not divide CIMDateTime by zero");
        throw Exception(parms);
    }
    _usec /= num;
    return *this;
}

Uint64 CIMDateTime::operator/(const CIMDateTime& cdt) const {
    if (!isInterval() || !cdt.isInterval()) {
        MessageLoaderParms parms("Common.CIMDateTime.INVALID_OPERATION_DIV_TS",
                                 "Can not divide two CIMDateTime objects if one of them is "
                                 "a TimeStamp");
        throw TypeMismatchException(parms);
    }
    if (cdt._usec == 0) {
        MessageLoaderParms parms("Common.CIMDateTime.INVALID_OPERATION_DIV_ZERO",
                                 "Can not divide CIMDateTime by zero");
        throw Exception(parms);
    }
    return _usec / cdt._usec;
}

Boolean CIMDateTime::operator<(const CIMDateTime& x) const {
    return _compare(x) < 0;
}

Boolean CIMDateTime::operator<=(const CIMDateTime& x) const {
    return _compare(x) <= 0;
}

Boolean CIMDateTime::operator>(const CIMDateTime& x) const {
    return _compare(x) > 0;
}

Boolean CIMDateTime::operator>=(const CIMDateTime& x) const {
    return _compare(x) >= 0;
}

Boolean CIMDateTime::operator!=(const CIMDateTime& x) const {
    return _compare(x) != 0;
}

Boolean operator==(const CIMDateTime& x, const CIMDateTime& y) {
    return x.equal(y);
}

PEGASUS_NAMESPACE_END
