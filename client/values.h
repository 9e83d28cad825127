// Numbers of the gauge and the EC: which are possible, what they mean, how a person reads them.
#ifndef CLIENT_VALUES_H_
#define CLIENT_VALUES_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "client/reading.h"

namespace vexahealth {

// True when the export's contract allows this answer; reserved answers are dealt with before.
bool InRange(Kind kind, uint32_t answer);

// "1998-08-20" from the packed date (day in bits 0-4, month in bits 5-8, year since 1980 in bits 9-15), or
// nothing when the calendar has no such day.
std::optional<std::string> DateText(uint32_t packed);

// The two characters of the EC's firmware revision.
std::string RevisionText(uint32_t answer);

// Temperature in degrees Celsius with one decimal, from 0.1 K.
std::string CelsiusText(int64_t deci_kelvin);

// The value that the report carries for an answer in range.
Value ValueFrom(Kind kind, uint32_t answer);

// What a reader of the value must know, or empty.
std::string NoteOn(Kind kind, uint32_t answer);

// True when a byte of the manufacture information is 0x0.
bool HasZeroByte(std::string_view byte_list);

// The value as the table shows it, safe for a terminal.
std::string FriendlyText(const Reading& reading);

}  // namespace vexahealth

#endif  // CLIENT_VALUES_H_
