#include "object.h"

#include <algorithm>

#include "names.h"
#include "path.h"
#include "results.h"

namespace firmware {
namespace {

constexpr std::string_view kParametersClass = "__PARAMETERS";
constexpr int64_t kGenusClass = 1;
constexpr int64_t kGenusInstance = 2;

Datum TextOrNull(std::optional<std::string> text) { return text ? Datum::Text(*std::move(text)) : Datum{}; }

std::string FullNamespace(const Object& object) {
  std::string name = object.namespace_name;
  std::ranges::replace(name, '/', '\\');
  return name.starts_with("\\\\.\\") ? name.substr(4) : name;
}

std::vector<ObjectProperty> SystemProperties(const Object& object) {
  const bool placed = !object.namespace_name.empty();
  std::optional<std::string> relative;
  if (placed) relative = object.is_class ? object.shape->name : RelativePath(*object.shape, object.values);
  std::optional<std::string> path;
  if (relative) path = "\\\\" + object.server + "\\" + FullNamespace(object) + ":" + *relative;
  const CimType text{Cim::kString, false};
  const CimType number{Cim::kSint32, false};
  const auto count = static_cast<int64_t>(object.shape->properties.size());
  return {
      {"__GENUS", number, Datum::Integer(kVtI4, object.is_class ? kGenusClass : kGenusInstance), true},
      {"__CLASS", text, Datum::Text(object.shape->name), true},
      {"__SUPERCLASS", text, {}, true},
      {"__DYNASTY", text, Datum::Text(object.shape->name), true},
      {"__RELPATH", text, TextOrNull(relative), true},
      {"__PROPERTY_COUNT", number, Datum::Integer(kVtI4, count), true},
      {"__DERIVATION", {Cim::kString, true}, {.vt = kVtArray | kVtBstr, .has_items = true}, true},
      {"__SERVER", text, placed ? Datum::Text(object.server) : Datum{}, true},
      {"__NAMESPACE", text, placed ? Datum::Text(FullNamespace(object)) : Datum{}, true},
      {"__PATH", text, TextOrNull(path), true},
  };
}

}  // namespace

std::vector<ObjectProperty> PropertiesOf(const Object& object) {
  std::vector<ObjectProperty> properties = SystemProperties(object);
  for (size_t i = 0; i < object.shape->properties.size(); ++i) {
    const Property& property = object.shape->properties[i];
    properties.push_back({property.name, property.type, object.is_class ? Datum{} : object.values[i], false});
  }
  return properties;
}

std::optional<ObjectProperty> FindProperty(const Object& object, std::string_view name) {
  std::vector<ObjectProperty> properties = PropertiesOf(object);
  const auto found = std::ranges::find_if(properties, [&](const ObjectProperty& p) { return SameName(p.name, name); });
  if (found == properties.end()) return std::nullopt;
  return std::move(*found);
}

uint32_t PutProperty(Object& object, std::string_view name, const Datum& value, int type) {
  if (object.is_class) return kNotSupported;
  if (name.starts_with("__")) return kReadOnly;
  const auto& properties = object.shape->properties;
  const auto found = std::ranges::find_if(properties, [&](const Property& p) { return SameName(p.name, name); });
  if (found == properties.end()) return kNotFound;
  if (type != 0 && type != found->type.Code()) return kTypeMismatch;
  std::expected<Datum, uint32_t> converted = Convert(value, found->type);
  if (!converted) return converted.error();
  object.values[static_cast<size_t>(found - properties.begin())] = *std::move(converted);
  return 0;
}

Object InstanceOf(const Table& table, const Row& row, const std::vector<std::string>& columns) {
  Object object{.shape = table.shape, .values = row};
  if (columns.empty()) return object;
  ClassShape chosen{.name = table.shape->name, .methods = table.shape->methods};
  Row values;
  for (size_t i = 0; i < row.size(); ++i) {
    const Property& property = table.shape->properties[i];
    if (std::ranges::none_of(columns, [&](const std::string& c) { return SameName(c, property.name); })) continue;
    chosen.properties.push_back(property);
    values.push_back(row[i]);
  }
  object.shape = std::make_shared<const ClassShape>(std::move(chosen));
  object.values = std::move(values);
  return object;
}

Object ParametersOf(const ClassShape& shape, const Method& method, const std::vector<Property>& parameters) {
  return {.shape = std::make_shared<const ClassShape>(ClassShape{std::string(kParametersClass), parameters}),
          .is_class = true,
          .owner = shape.name,
          .method = method.name};
}

Object SpawnFrom(const Object& definition) {
  Object instance = definition;
  instance.is_class = false;
  instance.values.assign(definition.shape->properties.size(), Datum{});
  return instance;
}

std::optional<Arguments> ArgumentsOf(const Object* parameters, const Method& method) {
  Arguments arguments;
  for (const Property& input : method.inputs) {
    const std::optional<ObjectProperty> given = parameters ? FindProperty(*parameters, input.name) : std::nullopt;
    const std::optional<uint64_t> number = given ? UnsignedOf(given->value, input.type.base) : std::nullopt;
    if (!number) return std::nullopt;
    arguments.emplace_back(input.name, *number);
  }
  return arguments;
}

}  // namespace firmware
