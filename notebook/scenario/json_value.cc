#include "json_value.h"

#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

namespace scenario {
namespace {

// What the parser has taken so far.
struct Progress {
  int line = 1;
  char last = '\0';

  // The parser looks one character beyond a number, and has taken the line's end when it reports a broken
  // line.
  int TokenLine() const { return last == '\n' ? line - 1 : line; }
};

// Counts lines while the parser walks the text.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, Progress* progress) : at_(at), progress_(progress) {}

  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    progress_->last = *at_;
    if (*at_ == '\n') ++progress_->line;
    ++at_;
    return *this;
  }
  CountingIterator operator++(int) {
    CountingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }
  bool operator!=(const CountingIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  Progress* progress_;
};

// Receives the parser's events and builds the document from them.
class DocumentBuilder {
 public:
  using number_integer_t = nlohmann::json::number_integer_t;
  using number_unsigned_t = nlohmann::json::number_unsigned_t;
  using number_float_t = nlohmann::json::number_float_t;
  using string_t = nlohmann::json::string_t;
  using binary_t = nlohmann::json::binary_t;

  DocumentBuilder(const Progress& progress, Faults& faults) : progress_(progress), faults_(faults) {}

  JsonValue& Root() { return root_; }

  bool null() { return Put(JsonValue{}); }
  bool boolean(bool value) { return Put({.kind = JsonValue::Kind::kBoolean, .boolean = value}); }
  bool number_unsigned(number_unsigned_t value) {
    return Put({.kind = JsonValue::Kind::kInteger, .magnitude = value});
  }
  bool number_integer(number_integer_t value) {
    const bool negative = value < 0;
    const auto bits = static_cast<uint64_t>(value);
    return Put(
        {.kind = JsonValue::Kind::kInteger, .negative = negative, .magnitude = negative ? 0 - bits : bits});
  }
  bool number_float(number_float_t value, const string_t&) {
    return Put({.kind = JsonValue::Kind::kFraction, .real = value});
  }
  bool string(string_t& value) { return Put({.kind = JsonValue::Kind::kText, .text = std::move(value)}); }
  bool binary(binary_t&) { return false; }

  bool start_object(std::size_t) { return Open(JsonValue::Kind::kObject); }
  bool start_array(std::size_t) { return Open(JsonValue::Kind::kArray); }
  bool end_object() { return Close(); }
  bool end_array() { return Close(); }

  bool key(string_t& key) {
    JsonValue& object = *open_.back();
    for (const JsonValue& member : object.items) {
      if (member.key != key) continue;
      faults_.Add(progress_.TokenLine(), "key \"" + key + "\" is given twice; the first is at line " +
                                             std::to_string(member.key_line));
    }
    if (object.items.size() >= kMaxMembers) {
      faults_.Add(progress_.TokenLine(), "an object has more than " + std::to_string(kMaxMembers) + " keys");
      return false;
    }
    JsonValue& member = object.items.emplace_back();
    member.key = std::move(key);
    member.key_line = progress_.TokenLine();
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) {
    // The parser's text begins with its own name and position; what is wrong follows "column N: ".
    std::string message = error.what();
    const std::size_t column = message.find(", column ");
    const std::size_t text = column == std::string::npos ? column : message.find(": ", column);
    if (text != std::string::npos) message.erase(0, text + 2);
    faults_.Add(progress_.TokenLine(), message);
    return false;
  }

 private:
  // Where the next value goes: the root, the last member of an object, or a new item of an array.
  JsonValue& Slot() {
    if (open_.empty()) return root_;
    JsonValue& parent = *open_.back();
    if (parent.kind == JsonValue::Kind::kObject) return parent.items.back();
    return parent.items.emplace_back();
  }

  bool Put(JsonValue value) {
    JsonValue& slot = Slot();
    value.line = progress_.TokenLine();
    value.key = std::move(slot.key);
    value.key_line = slot.key_line;
    slot = std::move(value);
    return true;
  }

  bool Open(JsonValue::Kind kind) {
    if (open_.size() >= kMaxDepth) {
      faults_.Add(progress_.TokenLine(), "nested deeper than " + std::to_string(kMaxDepth) + " levels");
      return false;
    }
    JsonValue& slot = Slot();
    slot.kind = kind;
    slot.line = progress_.TokenLine();
    open_.push_back(&slot);
    return true;
  }

  bool Close() {
    open_.pop_back();
    return true;
  }

  const Progress& progress_;
  Faults& faults_;
  JsonValue root_;
  // Only the innermost one grows, so that the pointers to those around it stay good.
  std::vector<JsonValue*> open_;
};

}  // namespace

std::optional<JsonValue> ParseJson(std::string_view text, Faults& faults) {
  Progress progress;
  DocumentBuilder builder(progress, faults);
  const CountingIterator begin(text.data(), &progress);
  const CountingIterator end(text.data() + text.size(), &progress);
  if (!nlohmann::json::sax_parse(begin, end, &builder)) return std::nullopt;
  return std::move(builder.Root());
}

std::string_view KindName(JsonValue::Kind kind) {
  switch (kind) {
    case JsonValue::Kind::kNull:
      return "null";
    case JsonValue::Kind::kBoolean:
      return "a truth value";
    case JsonValue::Kind::kInteger:
      return "a number";
    case JsonValue::Kind::kFraction:
      return "a number with a fraction or beyond 64 bits";
    case JsonValue::Kind::kText:
      return "a text";
    case JsonValue::Kind::kArray:
      return "an array";
    case JsonValue::Kind::kObject:
      return "an object";
  }
  return "nothing";
}

}  // namespace scenario
