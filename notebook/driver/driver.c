// VexaSAIO.sys of the simulated notebook: its devices, and what happens when they are opened, asked and
// closed.
#include "driver.h"

#include <string.h>

// An explicit export keeps the linker from exporting everything.
__declspec(dllexport) DRIVER_INITIALIZE DriverEntry;

static const struct {
  const WCHAR* device;
  const WCHAR* link;
  const char* name;
  DEVICE_TYPE type;
} kDevices[kDeviceCount] = {
    [kDeviceSaio] = {L"\\Device\\VexaSAIO", L"\\DosDevices\\VexaSAIO", "VexaSAIO", 0x8010},
    [kDeviceAcpi] = {L"\\Device\\OBXACPI", L"\\DosDevices\\OBXACPI", "OBXACPI", FILE_DEVICE_UNKNOWN},
};

// Everything below is guarded by `lock` once the devices exist.
static struct {
  FAST_MUTEX lock;
  PDEVICE_OBJECT devices[kDeviceCount];
  uint32_t handles[kDeviceCount];
  Settings settings;
  FileIdentity identity;
  uint8_t* image;
  Notebook notebook;
  HANDLE log;  // open while a handle is open and the scenario wants a log
} state;

static void Lock(void) {
  KeEnterCriticalRegion();
  ExAcquireFastMutexUnsafe(&state.lock);
}

static void Unlock(void) {
  ExReleaseFastMutexUnsafe(&state.lock);
  KeLeaveCriticalRegion();
}

static void Wait(uint32_t milliseconds) {
  LARGE_INTEGER interval = {.QuadPart = -10000LL * milliseconds};
  if (milliseconds != 0) KeDelayExecutionThread(KernelMode, FALSE, &interval);
}

static NTSTATUS FaultStatus(ImageFault fault) {
  switch (fault) {
    case kImageGood:
      return STATUS_SUCCESS;
    case kImageTruncated:
      return STATUS_END_OF_FILE;
    case kImageWrongMagic:
      return STATUS_FILE_INVALID;
    case kImageWrongVersion:
      return STATUS_REVISION_MISMATCH;
    case kImageWrongChecksum:
      return STATUS_CRC_ERROR;
    default:
      return STATUS_FILE_CORRUPT_ERROR;
  }
}

// Reads the image when the file is not the one in use. The old image stays until the new one is found good.
static NTSTATUS RefreshNotebook(void) {
  FileIdentity identity = state.identity;
  uint8_t* bytes;
  size_t size;
  NTSTATUS status = ReadSettings(&state.settings);
  if (NT_SUCCESS(status)) status = ReadImageFile(&state.settings.image, &identity, &bytes, &size);
  if (!NT_SUCCESS(status) || bytes == NULL) return status;
  Notebook notebook;
  status = FaultStatus(AttachImage(bytes, size, &notebook));
  if (!NT_SUCCESS(status)) {
    ExFreePool(bytes);
    return status;
  }
  if (state.image != NULL) ExFreePool(state.image);
  state.image = bytes;
  state.identity = identity;
  state.notebook = notebook;
  return STATUS_SUCCESS;
}

static void CloseLog(void) {
  if (state.log != NULL) ZwClose(state.log);
  state.log = NULL;
}

static int AllClosed(void) { return state.handles[kDeviceSaio] == 0 && state.handles[kDeviceAcpi] == 0; }

static NTSTATUS PrepareFirstOpen(void) {
  NTSTATUS status = RefreshNotebook();
  if (NT_SUCCESS(status) && state.notebook.header->log) status = OpenLog(&state.settings.log, &state.log);
  return status;
}

static void LogOpen(enum ImageDevice device, NTSTATUS status) {
  LogLine line;
  line.length = 0;
  AddText(&line, "open ");
  AddText(&line, kDevices[device].name);
  if (NT_SUCCESS(status)) {
    AddText(&line, " handles ");
    AddDecimal(&line, state.handles[device]);
  } else {
    AddText(&line, " -> failed 0x");
    AddHex(&line, (uint32_t)status, 8);
  }
  EndLine(&line);
  AppendToLog(state.log, &line);
}

static enum ImageDevice DeviceOf(PDEVICE_OBJECT device) {
  return device == state.devices[kDeviceAcpi] ? kDeviceAcpi : kDeviceSaio;
}

static NTSTATUS Complete(PIRP irp, NTSTATUS status, ULONG_PTR information) {
  irp->IoStatus.Status = status;
  irp->IoStatus.Information = information;
  IoCompleteRequest(irp, IO_NO_INCREMENT);
  return status;
}

static NTSTATUS Open(enum ImageDevice device) {
  NTSTATUS status = AllClosed() ? PrepareFirstOpen() : STATUS_SUCCESS;
  if (!NT_SUCCESS(status)) return status;
  const RuleEffects effects = ApplyRules(&state.notebook, kRuleOpen, device, NULL);
  if (effects.effects & kEffectDelay) Wait(effects.delay_ms);
  if (effects.effects & kEffectFail) status = (NTSTATUS)effects.fail;
  if (NT_SUCCESS(status)) ++state.handles[device];
  if (state.log != NULL) LogOpen(device, status);
  if (AllClosed()) CloseLog();
  return status;
}

// Wine gives its caller a handle even when the open fails. Such a handle keeps the status in its file object:
// it answers nothing but that, and is not counted.
static NTSTATUS OpenStatus(PIRP irp) {
  return (NTSTATUS)(ULONG_PTR)IoGetCurrentIrpStackLocation(irp)->FileObject->FsContext;
}

static NTSTATUS NTAPI DispatchCreate(PDEVICE_OBJECT device, PIRP irp) {
  Lock();
  const NTSTATUS status = Open(DeviceOf(device));
  Unlock();
  IoGetCurrentIrpStackLocation(irp)->FileObject->FsContext = (PVOID)(ULONG_PTR)status;
  return Complete(irp, status, 0);
}

static NTSTATUS NTAPI DispatchClose(PDEVICE_OBJECT device, PIRP irp) {
  if (!NT_SUCCESS(OpenStatus(irp))) return Complete(irp, STATUS_SUCCESS, 0);
  Lock();
  --state.handles[DeviceOf(device)];
  if (AllClosed()) CloseLog();
  Unlock();
  return Complete(irp, STATUS_SUCCESS, 0);
}

static void CarryOut(Exchange* exchange) {
  LogLine line;
  LogLine* log = state.log != NULL ? &line : NULL;
  line.length = 0;
  BeginExchange(&state.notebook, exchange, log);
  if (exchange->effects.effects & kEffectDelay) Wait(exchange->effects.delay_ms);
  FinishExchange(&state.notebook, exchange, log);
  if (log != NULL) AppendToLog(state.log, log);
}

// An exchange that is delayed delays the ones behind it, as the EC takes one command at a time.
static NTSTATUS NTAPI DispatchControl(PDEVICE_OBJECT device, PIRP irp) {
  const IO_STACK_LOCATION* location = IoGetCurrentIrpStackLocation(irp);
  Exchange exchange;
  if (!NT_SUCCESS(OpenStatus(irp))) return Complete(irp, OpenStatus(irp), 0);
  exchange.device = DeviceOf(device);
  exchange.code = location->Parameters.DeviceIoControl.IoControlCode;
  exchange.buffer = irp->AssociatedIrp.SystemBuffer;
  exchange.input_length = location->Parameters.DeviceIoControl.InputBufferLength;
  exchange.output_length = location->Parameters.DeviceIoControl.OutputBufferLength;
  Lock();
  exchange.references = state.handles[kDeviceSaio];
  CarryOut(&exchange);
  Unlock();
  return Complete(irp, (NTSTATUS)exchange.status, exchange.written);
}

static void DeleteDevices(void) {
  for (unsigned i = 0; i < kDeviceCount; ++i) {
    UNICODE_STRING link;
    if (state.devices[i] == NULL) continue;
    RtlInitUnicodeString(&link, kDevices[i].link);
    IoDeleteSymbolicLink(&link);
    IoDeleteDevice(state.devices[i]);
    state.devices[i] = NULL;
  }
}

static NTSTATUS CreateDevices(PDRIVER_OBJECT driver) {
  NTSTATUS status = STATUS_SUCCESS;
  for (unsigned i = 0; i < kDeviceCount && NT_SUCCESS(status); ++i) {
    UNICODE_STRING name;
    UNICODE_STRING link;
    RtlInitUnicodeString(&name, kDevices[i].device);
    RtlInitUnicodeString(&link, kDevices[i].link);
    status = IoCreateDevice(driver, 0, &name, kDevices[i].type, 0, FALSE, &state.devices[i]);
    if (NT_SUCCESS(status)) status = IoCreateSymbolicLink(&link, &name);
  }
  return status;
}

static void FreeEverything(void) {
  DeleteDevices();
  CloseLog();
  if (state.image != NULL) ExFreePool(state.image);
  memset(&state, 0, sizeof(state));
}

static VOID NTAPI Unload(PDRIVER_OBJECT driver) {
  (void)driver;
  FreeEverything();
}

static NTSTATUS Start(PDRIVER_OBJECT driver) {
  NTSTATUS status = RefreshNotebook();
  if (!NT_SUCCESS(status)) return status;
  Wait(state.notebook.header->start_delay_ms);
  status = (NTSTATUS)state.notebook.header->start_status;
  return NT_SUCCESS(status) ? CreateDevices(driver) : status;
}

NTSTATUS NTAPI DriverEntry(PDRIVER_OBJECT driver, PUNICODE_STRING registry_path) {
  (void)registry_path;
  memset(&state, 0, sizeof(state));
  ExInitializeFastMutex(&state.lock);
  driver->MajorFunction[IRP_MJ_CREATE] = DispatchCreate;
  driver->MajorFunction[IRP_MJ_CLOSE] = DispatchClose;
  driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = DispatchControl;
  driver->DriverUnload = Unload;
  const NTSTATUS status = Start(driver);
  if (!NT_SUCCESS(status)) FreeEverything();
  return status;
}
