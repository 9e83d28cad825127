// The registry values, the image file and the log file.
#include <string.h>

#include "driver.h"

static const WCHAR kSettingsKey[] = L"\\Registry\\Machine\\SOFTWARE\\Vexa\\Notebook";
static const WCHAR kDosPrefix[] = L"\\??\\";
enum { kPrefixCharacters = sizeof(kDosPrefix) / sizeof(WCHAR) - 1 };

// A value's head and its text: a path without the prefix that it gets.
typedef union ValueBuffer {
  KEY_VALUE_PARTIAL_INFORMATION value;
  UCHAR bytes[sizeof(KEY_VALUE_PARTIAL_INFORMATION) + kPathCapacity * sizeof(WCHAR)];
} ValueBuffer;

// `default_path` stands for a value that is not there; any other fault of the value is an error.
static NTSTATUS ReadPathValue(HANDLE key, const WCHAR* name, const WCHAR* default_path, Path* path) {
  ValueBuffer buffer;
  UNICODE_STRING value_name;
  ULONG length;
  NTSTATUS status = STATUS_OBJECT_NAME_NOT_FOUND;
  const void* text = default_path;
  size_t size = wcslen(default_path) * sizeof(WCHAR);
  RtlInitUnicodeString(&value_name, name);
  if (key != NULL) {
    status = ZwQueryValueKey(key, &value_name, KeyValuePartialInformation, &buffer, sizeof(buffer), &length);
  }
  if (NT_SUCCESS(status)) {
    if (buffer.value.Type != REG_SZ || buffer.value.DataLength < sizeof(WCHAR))
      return STATUS_OBJECT_NAME_INVALID;
    text = buffer.value.Data;
    size = buffer.value.DataLength & ~(sizeof(WCHAR) - 1);
  } else if (status != STATUS_OBJECT_NAME_NOT_FOUND) {
    return STATUS_OBJECT_NAME_INVALID;
  }
  if (size + sizeof(kDosPrefix) > sizeof(path->text)) return STATUS_OBJECT_NAME_INVALID;
  memset(path, 0, sizeof(*path));
  memcpy(path->text, kDosPrefix, sizeof(kDosPrefix));
  memcpy(path->text + kPrefixCharacters, text, size);
  return STATUS_SUCCESS;
}

NTSTATUS ReadSettings(Settings* settings) {
  UNICODE_STRING name;
  OBJECT_ATTRIBUTES attributes;
  HANDLE key = NULL;
  RtlInitUnicodeString(&name, kSettingsKey);
  InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE | OBJ_KERNEL_HANDLE, NULL, NULL);
  if (!NT_SUCCESS(ZwOpenKey(&key, KEY_QUERY_VALUE, &attributes))) key = NULL;
  NTSTATUS status = ReadPathValue(key, L"Image", L"C:\\vexa-notebook\\scenario.bin", &settings->image);
  if (NT_SUCCESS(status)) {
    status = ReadPathValue(key, L"Log", L"C:\\vexa-notebook\\driver.log", &settings->log);
  }
  if (key != NULL) ZwClose(key);
  return status;
}

static NTSTATUS OpenPath(const Path* path, ACCESS_MASK access, ULONG disposition, HANDLE* file) {
  UNICODE_STRING name;
  OBJECT_ATTRIBUTES attributes;
  IO_STATUS_BLOCK io;
  RtlInitUnicodeString(&name, path->text);
  InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE | OBJ_KERNEL_HANDLE, NULL, NULL);
  return ZwCreateFile(file, access | SYNCHRONIZE, &attributes, &io, NULL, FILE_ATTRIBUTE_NORMAL,
                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, disposition,
                      FILE_SYNCHRONOUS_IO_NONALERT | FILE_NON_DIRECTORY_FILE, NULL, 0);
}

// Reads `size` bytes from the start, or fails with STATUS_END_OF_FILE.
static NTSTATUS ReadStart(HANDLE file, void* bytes, size_t size) {
  IO_STATUS_BLOCK io;
  LARGE_INTEGER start = {.QuadPart = 0};
  NTSTATUS status = ZwReadFile(file, NULL, NULL, NULL, &io, bytes, (ULONG)size, &start, NULL);
  if (NT_SUCCESS(status) && io.Information != size) status = STATUS_END_OF_FILE;
  return status;
}

static NTSTATUS Identify(HANDLE file, FileIdentity* identity) {
  FILE_NETWORK_OPEN_INFORMATION information;
  IO_STATUS_BLOCK io;
  NTSTATUS status =
      ZwQueryInformationFile(file, &io, &information, sizeof(information), FileNetworkOpenInformation);
  if (!NT_SUCCESS(status)) return status;
  memset(identity, 0, sizeof(*identity));
  identity->written = information.LastWriteTime;
  identity->size = information.EndOfFile;
  if (identity->size.QuadPart > IMAGE_MAX_SIZE) return STATUS_FILE_CORRUPT_ERROR;
  return ReadStart(file, identity->head, sizeof(identity->head));
}

NTSTATUS ReadImageFile(const Path* path, FileIdentity* identity, uint8_t** bytes, size_t* size) {
  HANDLE file;
  FileIdentity found;
  *bytes = NULL;
  NTSTATUS status = OpenPath(path, FILE_READ_DATA | FILE_READ_ATTRIBUTES, FILE_OPEN, &file);
  if (!NT_SUCCESS(status)) return status;
  status = Identify(file, &found);
  if (NT_SUCCESS(status) && memcmp(&found, identity, sizeof(found)) != 0) {
    *size = (size_t)found.size.QuadPart;
    uint8_t* block = ExAllocatePool(NonPagedPool, *size);
    status = block == NULL ? STATUS_INSUFFICIENT_RESOURCES : ReadStart(file, block, *size);
    if (NT_SUCCESS(status)) {
      *bytes = block;
      *identity = found;
    } else if (block != NULL) {
      ExFreePool(block);
    }
  }
  ZwClose(file);
  return status;
}

NTSTATUS OpenLog(const Path* path, HANDLE* log) {
  return OpenPath(path, FILE_APPEND_DATA, FILE_OPEN_IF, log);
}

NTSTATUS AppendToLog(HANDLE log, const LogLine* line) {
  IO_STATUS_BLOCK io;
  LARGE_INTEGER end = {.LowPart = FILE_WRITE_TO_END_OF_FILE, .HighPart = -1};
  return ZwWriteFile(log, NULL, NULL, NULL, &io, (void*)line->text, line->length, &end, NULL);
}
