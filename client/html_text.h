// Text for HTML: escaped, and shown with what would be invisible made visible.
#ifndef CLIENT_HTML_TEXT_H_
#define CLIENT_HTML_TEXT_H_

#include <string>
#include <string_view>

#include "client/reading.h"

namespace vexahealth {

// Any text, made harmless as content and as an attribute's value in quotes: control, invisible and bidirectional
// formatting characters become \x1b or \u{202e}, and & < > " ' become character references. Bytes that are not UTF-8
// become U+FFFD.
std::string HtmlText(std::string_view text);

// Well-formed JSON for a script element: the same value, in which no "<", ">" and "&" stands.
std::string JsonForScript(std::string_view json);

// <name attributes>content</name>; the attributes as they stand, the content as it stands.
std::string Element(std::string_view name, std::string_view attributes, std::string_view content);

// A negative number with a real minus sign in front; other texts as they are.
std::string WithMinusSign(std::string text, const Reading& reading);

// The reading's value for people, escaped. Lists of devices stand on lines of their own.
std::string HtmlValue(const Reading& reading);

}  // namespace vexahealth

#endif  // CLIENT_HTML_TEXT_H_
