// strftime-style rendering of a broken-down time over UTF-16 text, in the
// invariant ("C") locale.
//
// Directives (each opened by "%"):
//   %a %A  weekday name, abbreviated (Tue) or full (Tuesday)
//   %b %h  abbreviated month name (Nov); %B full month name (November)
//   %c     "%a %b %e %H:%M:%S %Y" (Tue Nov 17 20:18:38 2026)
//   %C     century, two digits (20); %y year within the century (26); %Y year (2026)
//   %d     day of month 01-31; %e the same padded with a blank ( 7)
//   %D     "%m/%d/%y"; %F "%Y-%m-%d"; %x "%m/%d/%y"
//   %H     hour 00-23; %I hour 01-12; %p AM or PM
//   %j     day of year 001-366; %m month 01-12; %M minute 00-59; %S second 00-60
//   %R     "%H:%M"; %T and %X "%H:%M:%S"; %r "%I:%M:%S %p"
//   %u     weekday 1-7 (Monday 1); %w weekday 0-6 (Sunday 0)
//   %U     week of the year 00-53, weeks starting on Sunday; %W the same from Monday
//   %V     ISO 8601 week 01-53; %G its year; %g its year within the century
//   %n     new line; %t tab; %% "%"
//   %z %Z  zone offset and name: nothing (the record carries no zone)
// The modifiers E (on c C x X y Y) and O (on d e H I m M S u U V w W y) are
// accepted and change nothing in this locale.
//
// Unknown directives (%Q, %Ek, a flag or width such as %-d or %10Y) and a
// lone "%" at the end make the whole text empty (status Malformed), as does
// a text longer than the buffer (status Overflow). Field values out of their
// range never crash: a name out of range shows as "?", a number as it is.
#pragma once

#include "platform/format.h"

#include <cstddef>
#include <ctime>

namespace varion::detail {

/// The pattern renderer's buffer: 255 characters and the terminator.
constexpr std::size_t kTimeBufferSize = 256;

/// Renders `pattern` for the broken-down time `t` (tm_year years since 1900,
/// tm_mon 0-11, tm_mday, tm_hour, tm_min, tm_sec, tm_wday 0 = Sunday, tm_yday
/// 0-365) into `out`, which holds `capacity` code units including the
/// terminator. The pattern ends at its view's end or at its first U+0000.
/// On any status but Ok, `out` holds the empty text and the length is 0.
/// Example: "%d.%m.%Y" for 2026-11-17 writes "17.11.2026".
FormatResult FormatTime(OleStringView pattern, const std::tm& t, OLECHAR* out, std::size_t capacity) noexcept;

}  // namespace varion::detail
