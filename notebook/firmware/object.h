// What a WMI object holds: a class definition, one of its instances, or the parameters of a method.
#ifndef NOTEBOOK_FIRMWARE_OBJECT_H_
#define NOTEBOOK_FIRMWARE_OBJECT_H_

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model.h"

namespace firmware {

struct Object {
  std::shared_ptr<const ClassShape> shape;
  bool is_class = false;
  Row values{};  // of an instance
  std::string server{};
  std::string namespace_name{};  // as the caller spelt it; empty for parameters

  // Whose parameters these are; rules name them. Empty for objects of a namespace.
  std::string owner{};
  std::string method{};
  Arguments inputs{};  // of the call that the out-parameters come from
};

struct ObjectProperty {
  std::string name;
  CimType type;
  Datum value;
  bool system = false;
};

// All properties, those of the system ("__PATH" and so on) first.
std::vector<ObjectProperty> PropertiesOf(const Object& object);

// Nothing when the object has no such property.
std::optional<ObjectProperty> FindProperty(const Object& object, std::string_view name);

// Stores a value of an instance, converted to the property's type; a result code when that cannot be. `type` is what
// the caller says the type is, or 0.
uint32_t PutProperty(Object& object, std::string_view name, const Datum& value, int type);

// The row of a table with the chosen columns only; all of them when `columns` is empty.
Object InstanceOf(const Table& table, const Row& row, const std::vector<std::string>& columns);

// The definition of a method's in- or out-parameters.
Object ParametersOf(const ClassShape& shape, const Method& method, const std::vector<Property>& parameters);

// An instance of the class with every value null.
Object SpawnFrom(const Object& definition);

// The in-parameters of a call in the order of the method's definition; nothing when one is missing.
std::optional<Arguments> ArgumentsOf(const Object* parameters, const Method& method);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_OBJECT_H_
