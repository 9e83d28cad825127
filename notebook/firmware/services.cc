#include "services.h"

#include <algorithm>

#include "class_object.h"
#include "enumerator.h"
#include "files.h"
#include "methods.h"
#include "names.h"
#include "scenario/texts.h"
#include "upstream.h"
#include "variants.h"
#include "wql.h"

namespace firmware {
namespace {

using scenario::Concat;

std::string ServerName() {
  wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
  DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
  GetComputerNameW(name, &length);
  return Narrow(name);
}

bool Knows(const ClassShape& shape, std::string_view name) {
  return name.starts_with("__") ||
         std::ranges::any_of(shape.properties, [name](const Property& p) { return SameName(p.name, name); });
}

// Whether a query names only properties that the class has.
bool Fits(const Query& query, const ClassShape& shape) {
  std::vector<std::string> names = query.columns;
  if (query.condition) CollectProperties(*query.condition, names);
  return std::ranges::all_of(names, [&shape](const std::string& name) { return Knows(shape, name); });
}

// The rows that a query gives, repeated or cut to `count` when a rule says so.
std::vector<const Row*> SelectRows(const Query& query, const Table& table, std::optional<uint32_t> count) {
  std::vector<const Row*> found;
  for (const Row& row : table.rows) {
    if (!query.condition || Meets(*query.condition, *table.shape, row)) found.push_back(&row);
  }
  if (!count || found.empty()) return found;
  std::vector<const Row*> wanted;
  for (uint32_t i = 0; i < *count; ++i) wanted.push_back(found[i % found.size()]);
  return wanted;
}

std::string QueryLine(const std::string& place, const std::string& query, LONG flags, const std::string& result) {
  return Concat("query ", place, " flags=", scenario::Hex(static_cast<uint32_t>(flags)), " ", query, " -> ", result);
}

}  // namespace

Services::Services(std::shared_ptr<const Notebook> notebook, std::wstring namespace_name, Ref<IWbemServices> upstream)
    : notebook_(std::move(notebook)),
      namespace_(std::move(namespace_name)),
      key_(NamespaceName(Narrow(namespace_))),
      upstream_(std::move(upstream)),
      upstream_tried_(bool{upstream_}) {}

Services::~Services() { notebook_->StoreCounts(); }

Exchange Services::At(Step step, std::string_view class_name) const {
  return {.step = step, .namespace_name = key_, .class_name = class_name};
}

IWbemServices* Services::Upstream() {
  const std::lock_guard guard(lock_);
  if (upstream_tried_) return upstream_.Get();
  upstream_tried_ = true;
  Ref<IWbemLocator> locator;
  if (FAILED(NewUpstreamLocator(locator.Out()))) return nullptr;
  const BSTR name = SysAllocString(namespace_.c_str());
  locator->ConnectServer(name, nullptr, nullptr, nullptr, 0, nullptr, nullptr, upstream_.Out());
  SysFreeString(name);
  return upstream_.Get();
}

Object Services::Placed(Object object) const {
  object.server = ServerName();
  object.namespace_name = Narrow(namespace_);
  return object;
}

HRESULT Services::OpenNamespace(const BSTR name, LONG flags, IWbemContext* context, IWbemServices** services,
                                IWbemCallResult** result) {
  return Guarded([&]() -> HRESULT {
    if (name == nullptr || services == nullptr) return WBEM_E_INVALID_PARAMETER;
    *services = nullptr;
    const std::wstring full = namespace_ + L"\\" + name;
    Ref<IWbemServices> upstream;
    if (!notebook_->HasNamespace(NamespaceName(Narrow(full)))) {
      const HRESULT opened =
          PassOn([&](IWbemServices* up) { return up->OpenNamespace(name, flags, context, upstream.Out(), result); });
      if (FAILED(opened)) return opened;
    }
    *services = new Services(notebook_, full, std::move(upstream));
    return WBEM_S_NO_ERROR;
  });
}

HRESULT Services::GetObject(const BSTR path, LONG flags, IWbemContext* context, IWbemClassObject** object,
                            IWbemCallResult** result) {
  return Guarded([&]() -> HRESULT {
    if (object != nullptr) *object = nullptr;
    const std::optional<ObjectPath> parsed = ParsePath(FromBstr(path));
    const std::string class_name = parsed ? parsed->class_name : "";
    if (const auto failed = notebook_->Meet(At(Step::kGetObject, class_name))) return *failed;
    const Table* table = notebook_->FindTable(key_, class_name);
    if (table == nullptr) {
      return PassOn([&](IWbemServices* up) {
        const HRESULT got = up->GetObject(path, flags, context, object, result);
        HandOn(OriginOf(class_name), object);
        return got;
      });
    }
    if (object == nullptr) return WBEM_E_INVALID_PARAMETER;
    const Row* row = FindRow(*table, *parsed);
    if (row == nullptr && !parsed->IsClass()) return WBEM_E_NOT_FOUND;
    Object found = row == nullptr ? Object{.shape = table->shape, .is_class = true} : InstanceOf(*table, *row, {});
    *object = new ClassObject(notebook_, Placed(std::move(found)));
    return WBEM_S_NO_ERROR;
  });
}

HRESULT Services::CreateInstanceEnum(const BSTR class_name, LONG flags, IWbemContext* context,
                                     IEnumWbemClassObject** rows) {
  return Guarded([&]() -> HRESULT {
    if (notebook_->FindTable(key_, FromBstr(class_name)) == nullptr) {
      return PassOn([&](IWbemServices* up) { return up->CreateInstanceEnum(class_name, flags, context, rows); });
    }
    const BSTR language = SysAllocString(L"WQL");
    const BSTR query = SysAllocString((L"select * from " + std::wstring(class_name)).c_str());
    const HRESULT result = ExecQuery(language, query, flags, context, rows);
    SysFreeString(language);
    SysFreeString(query);
    return result;
  });
}

HRESULT Services::ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                            IEnumWbemClassObject** rows) {
  return Guarded([&]() -> HRESULT {
    if (rows == nullptr || language == nullptr || query == nullptr) return WBEM_E_INVALID_PARAMETER;
    *rows = nullptr;
    const std::string text = Narrow(query);
    const std::optional<Query> parsed = ParseQuery(text);
    const std::string class_name = parsed ? parsed->class_name : "";
    Effects effects;
    if (const auto failed = notebook_->Meet(At(Step::kExecQuery, class_name), effects)) {
      notebook_->Log(QueryLine(key_, text, flags, "failed " + ResultText(*failed)));
      return *failed;
    }
    const Table* table = notebook_->FindTable(key_, class_name);
    if (table == nullptr) return PassQueryOn(language, query, flags, context, effects, rows);
    if (!SameName(Narrow(language), "WQL")) return WBEM_E_INVALID_QUERY_TYPE;
    return RunQuery(text, flags, effects, *table, rows);
  });
}

HRESULT Services::RunQuery(const std::string& text, LONG flags, const Effects& effects, const Table& table,
                           IEnumWbemClassObject** rows) {
  const Query query = *ParseQuery(text);
  if (!Fits(query, *table.shape)) {
    notebook_->Log(QueryLine(key_, text, flags, "failed " + ResultText(static_cast<HRESULT>(WBEM_E_INVALID_QUERY))));
    return WBEM_E_INVALID_QUERY;
  }
  // A column of the system can be told only with the keys at hand.
  const bool all = std::ranges::any_of(query.columns, [](const std::string& c) { return c.starts_with("__"); });
  std::vector<Object> objects;
  for (const Row* row : SelectRows(query, table, effects.rows)) {
    objects.push_back(Placed(InstanceOf(table, *row, all ? std::vector<std::string>{} : query.columns)));
  }
  const std::string result = Concat("rows=", objects.size());
  *rows = new Enumerator(OriginOf(table.shape->name), std::move(objects), (flags & WBEM_FLAG_FORWARD_ONLY) != 0);
  notebook_->Count("query " + table.shape->name);
  notebook_->Log(QueryLine(key_, text, flags, result));
  return WBEM_S_NO_ERROR;
}

HRESULT Services::PassQueryOn(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                              const Effects& effects, IEnumWbemClassObject** rows) {
  Ref<IEnumWbemClassObject> found;
  const HRESULT result =
      PassOn([&](IWbemServices* up) { return up->ExecQuery(language, query, flags, context, found.Out()); });
  const std::string text = Narrow(query);
  notebook_->Log(QueryLine(key_, text, flags, "passed on " + ResultText(result)));
  if (!found) return result;
  const std::optional<Query> parsed = ParseQuery(text);
  *rows = new PassedOnEnumerator(OriginOf(parsed ? parsed->class_name : ""), std::move(found), effects.rows);
  return result;
}

}  // namespace firmware
