// Failures, statuses and delays on demand.
#include <string.h>

#include "model.h"

static int EcMatches(const ImageRule* rule, const EcRecord* ec) {
  if (ec == NULL || rule->command != ec->command) return 0;
  const uint32_t given = ec->count < IMAGE_EC_DATA ? ec->count : IMAGE_EC_DATA;
  return rule->data_length <= given && memcmp(rule->data, ec->data, rule->data_length) == 0;
}

static int RuleMatches(const ImageRule* rule, enum ImageRuleKind kind, uint32_t subject, const EcRecord* ec) {
  if (rule->kind == kRuleEc) return EcMatches(rule, ec);
  return rule->kind == kind && rule->subject == subject;
}

static void AddEffects(const ImageRule* rule, RuleEffects* sum) {
  const uint32_t added = rule->effects & ~sum->effects;
  if (added & kEffectFail) sum->fail = rule->fail;
  if (added & kEffectStatus) sum->status = rule->status;
  if (added & kEffectDelay) sum->delay_ms = rule->delay_ms;
  if (added & kEffectLength) sum->length = rule->length;
  if (added & kEffectByte) sum->byte = rule->byte;
  sum->effects |= added;
}

RuleEffects ApplyRules(Notebook* notebook, enum ImageRuleKind kind, uint32_t subject, const EcRecord* ec) {
  RuleEffects sum;
  memset(&sum, 0, sizeof(sum));
  for (uint32_t i = 0; i < RowCount(notebook, kImageRules); ++i) {
    ImageRule* rule = &notebook->rules[i];
    if (!RuleMatches(rule, kind, subject, ec)) continue;
    if (rule->seen != UINT32_MAX) ++rule->seen;
    if (rule->seen >= rule->first && rule->seen <= rule->last) AddEffects(rule, &sum);
  }
  return sum;
}
