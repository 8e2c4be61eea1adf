// Parses a version number such as "1.2.30".
#region Parsing
using System;

public static class Version
{
    /* Returns -1 when the text
       is not a version. */
    public static int Major(string text)
    {
        if (string.IsNullOrEmpty(text)) return -1;
        char separator = '.';
        string[] parts = text.Split(separator);
        return int.TryParse(parts[0], out int major) ? major : -1;
    }

    private const string Sample = "C:\\tmp\\\"v\" 2";
    private const int Limit = 0x10;
}
#endregion
