// The battery in a few lines of C#.
//
// usage: Battery VexaWinIO64.dll
using System;
using System.IO;
using Vexa;

static class Battery {
  static void Show<T>(string name, Answer<T> answer, string unit = "") {
    Console.WriteLine("{0}: {1}", name, answer.HasValue ? answer.Value + unit : "none (" + answer.Why + ")");
  }

  static int Main(string[] arguments) {
    using (var library = new Library(Path.GetFullPath(arguments[0])))
    using (var session = library.Start()) {
      if (session == null) {
        Console.Error.WriteLine("the library is not ready");
        return 1;
      }
      library.TraceOutput("sample begins");
      Show("manufacturer", library.BatteryHealthyTable_ManufactureName());
      var charge = library.BatteryHealthyTable_Rsoc();
      Show("charge", charge, " %");
      Show("current", library.BatteryHealthyTable_Current(), " mA");
      Show("fully charged", library.BatteryHealthyTable_FullCharged());
      Show("manufacture information", library.BatteryHealthyTable_BatteryInformation());
      Show("application folder", library.WMIGetAppPath());
      return charge.HasValue ? 0 : 2;
    }
  }
}
