"""VexaWinIO64.dll for Python: every answer is a value, or the exception Missing with its reason.

Made by interface/generate.py from interface/exports.json and interface/templates/vexawinio.py: change those.

    library = vexawinio.Library(r"C:\\Program Files\\Vexa\\VexaWinIO64.dll")
    with library.session():                       # InitializeWinIo; its end is ShutdownWinIo
        try:
            print(library.BatteryHealthyTable_Rsoc(), "%")
        except vexawinio.Missing as missing:
            print(missing.reason)

Needs nothing but the standard library; Python 3.8 or later, 64 bits. The methods have the exports' names.
"""

import contextlib
import ctypes
import ntpath

NO_ANSWER = 0x7FFFFFFF
NOT_AVAILABLE = 0xFFFFFFFF
FAN_SLOTS = 255

REASONS = (@REASONS@, "missing_export")

u8, u32, i32 = ctypes.c_uint8, ctypes.c_uint32, ctypes.c_int32
text8, text16, memory = ctypes.c_char_p, ctypes.c_wchar_p, ctypes.c_void_p

@RECORDS@

class Missing(Exception):
    """There is no value; the reason is one of REASONS."""

    def __init__(self, export, reason):
        super().__init__(f"{export}: {reason}")
        self.export = export
        self.reason = reason


# name: (what it returns, argument types, shape of the answer, capacity of a text or None, signed,
#        {reserved number: (reason, also a true reading)}, {reserved text: reason}, doubt, default arguments)
EXPORTS = {
@TABLE@
}


class Library:
    """The library at an absolute path. What it needs comes from its own folder and the system's."""

    def __init__(self, path):
        if not ntpath.splitdrive(path)[0] or not ntpath.isabs(path):
            raise ValueError("the path of the library must be absolute")
        # LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32
        self._dll = ctypes.CDLL(path, winmode=0x100 | 0x800)
        self._functions = {}

    @contextlib.contextmanager
    def session(self):
        """Makes the library ready for as long as the block runs. Administrator rights and waits: see InitializeWinIo."""
        if self.raw("InitializeWinIo")() != 1:
            raise Missing("InitializeWinIo", "refused")
        try:
            yield self
        finally:
            self.raw("ShutdownWinIo")()

    def raw(self, name):
        """The export itself, with its types."""
        if name not in self._functions:
            try:
                function = getattr(self._dll, name)
            except AttributeError:
                raise Missing(name, "missing_export") from None
            function.restype, function.argtypes = EXPORTS[name][0], EXPORTS[name][1]
            self._functions[name] = function
        return self._functions[name]

    def TraceOutput(self, text):
        """Writes a line at level 4 (informational)."""
        self._line("TraceOutput", text)

    def TraceOutputCritical(self, text):
        """Writes a line at level 1 (critical)."""
        self._line("TraceOutputCritical", text)

    def HealthyTable_Read_Fan(self):
        """Speeds of all fans in the order of their indexes; None for one that did not answer."""
        function = self.raw("HealthyTable_Read_Fan")
        count = self.HealthyTable_FanCounts()
        slots = (u32 * FAN_SLOTS)()
        function(slots)
        return [None if speed in (NO_ANSWER, NOT_AVAILABLE) else speed for speed in slots[:min(count, FAN_SLOTS)]]

    def _line(self, name, text):
        data = text.encode("utf-16-le", "surrogatepass")
        self.raw(name)(len(data), data)

    def _doubtful(self, kind, least_version, on_arm64):
        """Why a doubtful answer is none; None when it is a true reading."""
        voltage = self.raw("BatteryHealthyTable_PackageVoltage")() if kind == "battery" else NO_ANSWER
        answered = voltage not in (0, NO_ANSWER, NOT_AVAILABLE)
        if answered and on_arm64:
            return None
        version = self.raw("BatteryHealthyTable_ReadVersion")()
        if version == NO_ANSWER:  # with a pack voltage: an ARM64 machine
            return "unsupported" if answered else "no_answer"
        if version < least_version:
            return "unsupported"
        return "no_answer" if kind == "battery" and voltage in (NO_ANSWER, NOT_AVAILABLE) else None

    def _judge(self, name, answer):
        if answer is None:
            return
        reason, also_reading = EXPORTS[name][5].get(answer & 0xFFFFFFFF, (None, False))
        if also_reading:
            doubt = EXPORTS[name][7]
            reason = self._doubtful(*doubt) if doubt else None
        if reason is not None:
            raise Missing(name, reason)

    def _text(self, name, text):
        reason = EXPORTS[name][6].get(text)
        if reason is not None:
            raise Missing(name, reason)
        return text

    def _call(self, name, arguments):
        _, _, shape, capacity, signed, _, _, _, defaults = EXPORTS[name]
        function = self.raw(name)
        arguments = tuple(arguments) + defaults[len(arguments):]
        if shape in ("number", "flag", "done"):
            answer = function(*arguments)
            self._judge(name, answer)
            if shape == "done" and answer != 1:
                raise Missing(name, "refused")
            if shape == "flag":
                return answer != 0
            return None if shape == "done" else i32(answer).value if signed else answer
        if shape == "returned":
            return self._text(name, function().text.decode("mbcs", "replace"))
        if shape == "record":
            record = VexaPdIcPartNumber()
            if function(record) != 1:
                raise Missing(name, "no_answer")
            return record
        if shape == "narrow":
            buffer = ctypes.create_string_buffer(capacity)
            self._judge(name, function(buffer, *arguments))
            return self._text(name, buffer.value.decode("mbcs", "replace"))
        return self._wide(name, function, shape, capacity, arguments)

    def _wide(self, name, function, shape, capacity, arguments):
        if shape == "allocated":
            given = ctypes.c_void_p()
            function(ctypes.byref(given), *arguments)
            text = ctypes.wstring_at(given) if given else ""
            free = ctypes.WinDLL("ole32").CoTaskMemFree
            free.argtypes = (ctypes.c_void_p,)
            free(given)
            if not text:
                raise Missing(name, "no_answer")
            return text
        places = 2 if shape == "two" else 1
        if shape in ("long", "two"):  # null buffers ask for the length
            capacity = max(capacity, 2 * function(*(None,) * places, *arguments) + 1)
        buffers = [ctypes.create_unicode_buffer(capacity) for _ in range(places)]
        self._judge(name, function(*buffers, *arguments))
        texts = tuple(self._text(name, buffer.value) for buffer in buffers)
        return texts if shape == "two" else texts[0]


def _method(name, summary):
    def method(self, *arguments):
        return self._call(name, arguments)

    method.__name__ = name
    method.__doc__ = summary
    return method


SUMMARIES = {
@SUMMARIES@
}

for _name, _summary in SUMMARIES.items():
    setattr(Library, _name, _method(_name, _summary))
