#include "path.h"

#include <algorithm>

#include "names.h"
#include "wql_tokens.h"

namespace firmware {
namespace {

// Text of a key's value, and whether a path shows it in quotes.
std::optional<std::string> KeyText(const Datum& value, bool& quoted) {
  quoted = value.vt == kVtBstr;
  if (quoted) return value.text;
  if (value.vt == kVtBool) return value.bits != 0 ? "TRUE" : "FALSE";
  if ((value.vt & kVtArray) != 0 || value.vt == kVtNull) return std::nullopt;
  return std::to_string(static_cast<int64_t>(value.bits));
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (char c : text) {
    if (c == '\\' || c == '"') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

// What comes before the class: "\\server\a\b:". A colon inside a key's value belongs to the key.
std::string_view WithoutNamespace(std::string_view text) {
  const size_t colon = text.find(':');
  const size_t quote = text.find('"');
  return colon == std::string_view::npos || quote < colon ? text : text.substr(colon + 1);
}

// "Key=value" or "value" of a path, after the class.
bool ReadKey(const std::vector<Token>& tokens, size_t& at, ObjectPath& path, bool named) {
  std::string name;
  if (named) {
    if (tokens[at].kind != Token::Kind::kName) return false;
    name = tokens[at++].text;
    if (tokens[at].text != "=" || tokens[at].kind != Token::Kind::kSymbol) return false;
    ++at;
  }
  if (tokens[at].kind == Token::Kind::kSymbol || tokens[at].kind == Token::Kind::kEnd) return false;
  path.keys.emplace_back(std::move(name), tokens[at++].text);
  return true;
}

}  // namespace

std::optional<ObjectPath> ParsePath(std::string_view text) {
  text = WithoutNamespace(text);
  ObjectPath path;
  const size_t end = text.find_first_of(".=");
  path.class_name = text.substr(0, end);
  if (path.class_name.empty()) return std::nullopt;
  const auto is_name = [](char c) {
    return c == '_' || (c >= '0' && c <= '9') || (UpperLetter(c) >= 'A' && UpperLetter(c) <= 'Z');
  };
  if (!std::ranges::all_of(path.class_name, is_name)) return std::nullopt;
  if (end == std::string_view::npos) return path;
  if (text.substr(end) == "=@") {
    path.singleton = true;
    return path;
  }
  const std::optional<std::vector<Token>> tokens = ReadTokens(text.substr(end + 1));
  if (!tokens) return std::nullopt;
  size_t at = 0;
  const bool named = text[end] == '.';
  while (ReadKey(*tokens, at, path, named)) {
    if ((*tokens)[at].kind == Token::Kind::kEnd) return path;
    if ((*tokens)[at++].text != ",") return std::nullopt;
  }
  return std::nullopt;
}

std::optional<std::string> RelativePath(const ClassShape& shape, const Row& row) {
  std::string keys;
  for (size_t i = 0; i < shape.properties.size(); ++i) {
    if (!shape.properties[i].key) continue;
    bool quoted = false;
    const std::optional<std::string> text = KeyText(row[i], quoted);
    if (!text) return std::nullopt;
    keys += keys.empty() ? "." : ",";
    keys += shape.properties[i].name + "=" + (quoted ? "\"" + Escaped(*text) + "\"" : *text);
  }
  return shape.name + (keys.empty() ? "=@" : keys);
}

const Row* FindRow(const Table& table, const ObjectPath& path) {
  const auto fits = [&](const Row& row) {
    size_t met = 0;
    size_t wanted = 0;
    for (size_t i = 0; i < row.size(); ++i) {
      const Property& property = table.shape->properties[i];
      if (!property.key) continue;
      ++wanted;
      bool quoted = false;
      const std::optional<std::string> text = KeyText(row[i], quoted);
      const auto agrees = [&](const auto& key) {
        return text && (key.first.empty() || SameName(key.first, property.name)) && SameName(key.second, *text);
      };
      if (std::ranges::count_if(path.keys, agrees) == 1) ++met;
    }
    return met == wanted && path.keys.size() == wanted;
  };
  if (path.IsClass()) return nullptr;
  const auto row = std::ranges::find_if(table.rows, fits);
  return row == table.rows.end() ? nullptr : &*row;
}

}  // namespace firmware
