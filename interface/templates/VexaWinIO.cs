// VexaWinIO64.dll for .NET: every answer is a value or the reason why there is none.
//
// Made by interface/generate.py from interface/exports.json and interface/templates/VexaWinIO.cs: change those.
//
//   using (var library = new Vexa.Library(@"C:\Program Files\Vexa\VexaWinIO64.dll"))
//   using (library.Start()) {                       // InitializeWinIo; its end is ShutdownWinIo
//     var charge = library.BatteryHealthyTable_Rsoc();
//     Console.WriteLine(charge.HasValue ? charge.Value + " %" : charge.Why.ToString());
//   }
//
// C# 7 or later with unsafe code allowed; .NET Framework 4.6 or later and every .NET, on x64 and ARM64.
using System;
using System.Collections.Generic;
using System.ComponentModel;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

namespace Vexa {

public enum Reason {
@REASONS@
  MissingExport,
}

public struct Answer<T> {
  public readonly bool HasValue;
  public readonly Reason Why;
  private readonly T value;

  public Answer(T value) {
    HasValue = true;
    Why = default(Reason);
    this.value = value;
  }

  public Answer(Reason why) {
    HasValue = false;
    Why = why;
    value = default(T);
  }

  public T Value {
    get {
      if (!HasValue) throw new InvalidOperationException(Why.ToString());
      return value;
    }
  }
}

// The exports as they are. Library loads the file that they are taken from.
public static unsafe class Native {
  private const string Dll = "VexaWinIO64.dll";

@RECORDS@
@DECLARATIONS@
}

public sealed unsafe class Library : IDisposable {
  private const uint NoAnswer = 0x7FFFFFFF, NotAvailable = 0xFFFFFFFF;
  private const int FanSlots = 255;
  private const uint SearchDllFolder = 0x100, SearchSystem32 = 0x800;
  private enum Doubt { None, Battery, Version }

  private struct Reserved {
    public uint Value;
    public Reason Why;
    public bool AlsoReading;
  }

  private IntPtr module;

  // Loads the file at this absolute path. What it needs comes from its own folder and the system's.
  public Library(string path) {
    if (!Path.IsPathRooted(path)) throw new ArgumentException("the path of the library must be absolute", "path");
    module = LoadLibraryExW(path, IntPtr.Zero, SearchDllFolder | SearchSystem32);
    if (module == IntPtr.Zero) throw new Win32Exception(Marshal.GetLastWin32Error());
  }

  // No call of this object, and no session, may be under way.
  public void Dispose() {
    if (module != IntPtr.Zero) FreeLibrary(module);
    module = IntPtr.Zero;
  }

  public sealed class Session : IDisposable {
    private bool open = true;

    public void Dispose() {
      if (open) Native.ShutdownWinIo();
      open = false;
    }
  }

  // Makes the library ready until the session is disposed of; null when it can't be. See InitializeWinIo.
  public Session Start() {
    return Native.InitializeWinIo() == 1 ? new Session() : null;
  }

  // Speeds of all fans in the order of their indexes.
  public Answer<Answer<uint>[]> HealthyTable_Read_Fan() {
    var count = HealthyTable_FanCounts();
    if (!count.HasValue) return new Answer<Answer<uint>[]>(count.Why);
    var slots = new uint[FanSlots];
    try {
      Native.HealthyTable_Read_Fan(slots);
    } catch (EntryPointNotFoundException) {
      return new Answer<Answer<uint>[]>(Reason.MissingExport);
    }
    var speeds = new Answer<uint>[Math.Min((int)count.Value, FanSlots)];
    for (int i = 0; i < speeds.Length; ++i) {
      speeds[i] = slots[i] == NoAnswer ? new Answer<uint>(Reason.NoAnswer)
          : slots[i] == NotAvailable ? new Answer<uint>(Reason.Unsupported) : new Answer<uint>(slots[i]);
    }
    return new Answer<Answer<uint>[]>(speeds);
  }

  public void TraceOutput(string text) { Native.TraceOutput(2 * text.Length, text); }
  public void TraceOutputCritical(string text) { Native.TraceOutputCritical(2 * text.Length, text); }

@METHODS@
  [DllImport("kernel32", ExactSpelling = true, SetLastError = true, CharSet = CharSet.Unicode)]
  private static extern IntPtr LoadLibraryExW(string path, IntPtr file, uint flags);
  [DllImport("kernel32", ExactSpelling = true)]
  private static extern int FreeLibrary(IntPtr module);

  private static Reserved R(uint value, Reason why, bool alsoReading = false) {
    return new Reserved { Value = value, Why = why, AlsoReading = alsoReading };
  }

  private static KeyValuePair<string, Reason> T(string text, Reason why) {
    return new KeyValuePair<string, Reason>(text, why);
  }

  // Why a doubtful answer is none; null when it is a true reading.
  private static Reason? Doubtful(Doubt doubt, uint leastVersion, bool onArm64) {
    uint voltage = doubt == Doubt.Battery ? Native.BatteryHealthyTable_PackageVoltage() : NoAnswer;
    bool answered = voltage != 0 && voltage != NoAnswer && voltage != NotAvailable;
    if (answered && onArm64) return null;
    uint version = Native.BatteryHealthyTable_ReadVersion();
    // With a pack voltage: an ARM64 machine.
    if (version == NoAnswer) return answered ? Reason.Unsupported : Reason.NoAnswer;
    if (version < leastVersion) return Reason.Unsupported;
    if (doubt == Doubt.Battery && (voltage == NoAnswer || voltage == NotAvailable)) return Reason.NoAnswer;
    return null;
  }

  private static Answer<TTo> Number<TTo>(Func<uint> call, Func<uint, TTo> convert, Reserved[] reserved,
                                         Doubt doubt = Doubt.None, uint leastVersion = 0, bool onArm64 = true) {
    try {
      uint answer = call();
      foreach (var one in reserved) {
        if (one.Value != answer) continue;
        if (!one.AlsoReading) return new Answer<TTo>(one.Why);
        Reason? why = doubt == Doubt.None ? null : Doubtful(doubt, leastVersion, onArm64);
        if (why != null) return new Answer<TTo>(why.Value);
        break;
      }
      return new Answer<TTo>(convert(answer));
    } catch (EntryPointNotFoundException) {
      return new Answer<TTo>(Reason.MissingExport);
    }
  }

  // The value is always true.
  private static Answer<bool> Done(Func<uint> call, Reserved[] reserved) {
    var answer = Number(call, a => a == 1, reserved);
    return answer.HasValue && !answer.Value ? new Answer<bool>(Reason.Refused) : answer;
  }

  private static Answer<string> Judge(string text, KeyValuePair<string, Reason>[] texts) {
    foreach (var one in texts) {
      if (one.Key == text) return new Answer<string>(one.Value);
    }
    return new Answer<string>(text);
  }

  private static string FromBytes(byte* bytes, int capacity) {
    int length = 0;
    while (length < capacity && bytes[length] != 0) ++length;
    return Marshal.PtrToStringAnsi((IntPtr)bytes, length);
  }

  private static string FromChars(char[] text) {
    int length = Array.IndexOf(text, '\0');
    return new string(text, 0, length < 0 ? text.Length : length);
  }

  private static Answer<string> Narrow(Func<byte[], uint> call, int capacity, Reserved[] reserved,
                                       params KeyValuePair<string, Reason>[] texts) {
    var buffer = new byte[capacity];
    var answer = Number(() => call(buffer), a => a, reserved);
    if (!answer.HasValue) return new Answer<string>(answer.Why);
    fixed (byte* bytes = buffer) return Judge(FromBytes(bytes, capacity), texts);
  }

  private static Answer<string> Wide(Func<char[], uint> call, int capacity, Reserved[] reserved,
                                     params KeyValuePair<string, Reason>[] texts) {
    var buffer = new char[capacity];
    var answer = Number(() => call(buffer), a => a, reserved);
    return answer.HasValue ? Judge(FromChars(buffer), texts) : new Answer<string>(answer.Why);
  }

  // Without a buffer the export tells the length; there is room for twice as much, should it grow meanwhile.
  private static Answer<string> Long(Func<char[], uint> call, int capacity, Reserved[] reserved,
                                     params KeyValuePair<string, Reason>[] texts) {
    var length = Number(() => call(null), a => a, new Reserved[0]);
    if (!length.HasValue) return new Answer<string>(length.Why);
    return Wide(call, Math.Max(capacity, 2 * (int)length.Value + 1), reserved, texts);
  }

  private static Answer<string[]> Two(Func<char[], char[], uint> call, int capacity) {
    var length = Number(() => call(null, null), a => a, new Reserved[0]);
    if (!length.HasValue) return new Answer<string[]>(length.Why);
    int room = Math.Max(capacity, 2 * (int)length.Value + 1);
    char[] first = new char[room], second = new char[room];
    if (call(first, second) == 0) return new Answer<string[]>(Reason.NoAnswer);
    return new Answer<string[]>(new[] { FromChars(first), FromChars(second) });
  }

  private delegate uint AllocatedCall(out IntPtr text);

  private static Answer<string> Allocated(AllocatedCall call) {
    IntPtr given = IntPtr.Zero;
    var answer = Number(() => call(out given), a => a, new Reserved[0]);
    if (!answer.HasValue) return new Answer<string>(answer.Why);
    string text = Marshal.PtrToStringUni(given);
    Marshal.FreeCoTaskMem(given);
    return string.IsNullOrEmpty(text) ? new Answer<string>(Reason.NoAnswer) : new Answer<string>(text);
  }

  private static Answer<string> Returned(Func<Native.VexaText> call, params KeyValuePair<string, Reason>[] texts) {
    try {
      var text = call();
      return Judge(FromBytes(text.text, 1024), texts);
    } catch (EntryPointNotFoundException) {
      return new Answer<string>(Reason.MissingExport);
    }
  }
}

}  // namespace Vexa
