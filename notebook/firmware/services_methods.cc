// Method calls.
#include "class_object.h"
#include "files.h"
#include "methods.h"
#include "names.h"
#include "scenario/texts.h"
#include "services.h"
#include "variants.h"

namespace firmware {
namespace {

using scenario::Concat;

// "method ATD_STS.ec_read_command_byte commandcode=11 param0=1"
std::string CallText(const Table& table, const Method& method, const Arguments& inputs) {
  std::string text = Concat("method ", table.shape->name, ".", method.name);
  for (const auto& [name, value] : inputs) text += Concat(" ", name, "=", value);
  return text;
}

Object Answer(const Table& table, const Method& method, const Arguments& inputs, std::optional<uint32_t> value) {
  Object answer = SpawnFrom(ParametersOf(*table.shape, method, value ? method.outputs : std::vector<Property>{}));
  answer.inputs = inputs;
  if (value) answer.values.front() = DeliveredInteger(method.outputs.front().type.base, false, *value);
  return answer;
}

}  // namespace

HRESULT Services::ExecMethod(const BSTR path, const BSTR method_name, LONG flags, IWbemContext* context,
                             IWbemClassObject* in, IWbemClassObject** out, IWbemCallResult** result) {
  return Guarded([&]() -> HRESULT {
    if (out != nullptr) *out = nullptr;
    if (path == nullptr || method_name == nullptr) return WBEM_E_INVALID_PARAMETER;
    const std::optional<ObjectPath> parsed = ParsePath(Narrow(path));
    const Table* table = parsed ? notebook_->FindTable(key_, parsed->class_name) : nullptr;
    const Object* parameters = ClassObject::Own(in);
    if (table == nullptr) return PassMethodOn(path, method_name, flags, context, in, out, result);
    const Method* method = FindMethod(*table->shape, Narrow(method_name));
    if (method == nullptr) return WBEM_E_INVALID_METHOD;
    if (in != nullptr && parameters == nullptr) return WBEM_E_INVALID_METHOD_PARAMETERS;
    return RunMethod(*table, *parsed, *method, parameters, out);
  });
}

HRESULT Services::PassMethodOn(const BSTR path, const BSTR method, LONG flags, IWbemContext* context,
                               IWbemClassObject* in, IWbemClassObject** out, IWbemCallResult** result) {
  // The system's own services take only objects that they made.
  if (ClassObject::Own(in) != nullptr) return WBEM_E_INVALID_PARAMETER;
  const std::optional<ObjectPath> parsed = ParsePath(Narrow(path));
  const Origin origin = OriginOf(parsed ? parsed->class_name : "", Narrow(method));
  const HRESULT done = notebook_->Meet(origin.At(Step::kExecMethod)).value_or(S_OK);
  const std::string call = Concat("method ", origin.class_name, ".", origin.method);
  if (done != S_OK) {
    notebook_->Log(Concat(call, " -> failed ", ResultText(done)));
    return done;
  }
  const HRESULT passed = PassOn([&](IWbemServices* up) {
    const HRESULT called = up->ExecMethod(path, method, flags, context, Unwrapped(in), out, result);
    HandOn(origin, out);
    return called;
  });
  notebook_->Log(Concat(call, " -> passed on ", ResultText(passed)));
  return passed;
}

HRESULT Services::RunMethod(const Table& table, const ObjectPath& path, const Method& method, const Object* in,
                            IWbemClassObject** out) {
  const std::optional<Arguments> inputs = ArgumentsOf(in, method);
  const std::string call = CallText(table, method, inputs.value_or(Arguments{}));
  Exchange exchange = At(Step::kExecMethod, table.shape->name);
  exchange.method = method.name;
  if (inputs) exchange.inputs = &*inputs;
  const auto failing = [&](HRESULT result) {
    notebook_->Log(Concat(call, " -> failed ", ResultText(result)));
    return result;
  };
  Effects effects;
  if (const auto failed = notebook_->Meet(exchange, effects)) return failing(*failed);
  if (path.IsClass()) return failing(WBEM_E_INVALID_OBJECT_PATH);
  if (FindRow(table, path) == nullptr) return failing(WBEM_E_NOT_FOUND);
  if (!inputs) return failing(WBEM_E_INVALID_METHOD_PARAMETERS);
  uint32_t value = 0;
  notebook_->Change([&](State& state) {
    ++state.counters[Concat("method ", table.shape->name, ".", method.name)];
    value = effects.value ? *effects.value
                          : ExecuteMethod(notebook_->model(), state, table.shape->name, method.name, *inputs);
    return call + (effects.absent ? " -> nothing" : Concat(" -> ", method.outputs.front().name, "=", value));
  });
  if (out == nullptr) return WBEM_S_NO_ERROR;
  const std::optional<uint32_t> given = effects.absent ? std::nullopt : std::optional(value);
  *out = new ClassObject(notebook_, Answer(table, method, *inputs, given));
  return WBEM_S_NO_ERROR;
}

}  // namespace firmware
