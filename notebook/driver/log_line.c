#include "log_line.h"

enum { kLineEndLength = 1 };

static void AddCharacter(LogLine* line, char character) {
  if (line->length < sizeof(line->text) - kLineEndLength) line->text[line->length++] = character;
}

void AddText(LogLine* line, const char* text) {
  while (*text != '\0') AddCharacter(line, *text++);
}

void AddName(LogLine* line, const char* name, uint32_t length) {
  for (uint32_t i = 0; i < length; ++i) {
    AddCharacter(line, name[i] > ' ' && name[i] <= '~' ? name[i] : '?');
  }
}

static void AddNumber(LogLine* line, uint64_t value, unsigned base, unsigned digits) {
  char reversed[20];
  unsigned count = 0;
  do {
    reversed[count++] = "0123456789abcdef"[value % base];
    value /= base;
  } while (value != 0 || count < digits);
  while (count != 0) AddCharacter(line, reversed[--count]);
}

void AddHex(LogLine* line, uint64_t value, unsigned digits) { AddNumber(line, value, 16, digits); }

void AddDecimal(LogLine* line, uint32_t value) { AddNumber(line, value, 10, 1); }

void EndLine(LogLine* line) { line->text[line->length++] = '\n'; }
