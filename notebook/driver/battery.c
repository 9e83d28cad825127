// The battery's own protocols: the manufacture-information handshake and the pass-through to the gauge.
#include "model.h"

enum HandshakeBit {
  kDataReady = 0x10,
  kAbnormalPrechargeTimeout = 0x40,
  kBusy = 0x80,
};

void RequestHandshake(ImageHandshake* handshake, uint8_t value) {
  if (value != handshake->request_value) return;
  handshake->under_way = 1;
  handshake->polls = 0;
  handshake->ready = 0;
}

// A status read is what advances a request that is under way: the time it takes is counted in polls, not in
// ms.
uint8_t PollHandshake(ImageHandshake* handshake) {
  if (handshake->under_way && handshake->ready_on_poll != 0 &&
      ++handshake->polls >= handshake->ready_on_poll) {
    handshake->under_way = 0;
    handshake->ready = 1;
  }
  uint8_t bits = 0;
  if (handshake->ready) bits |= kDataReady;
  if (handshake->flags & kHandshakePrechargeTimeout) bits |= kAbnormalPrechargeTimeout;
  if (handshake->under_way && (handshake->flags & kHandshakeShowsBusy)) bits |= kBusy;
  return bits;
}

enum GaugeSelector {
  kLatchRegister = 0x01,
  kLatchedByte = 0x02,
  kByteCount = 0x03,
};

// Row of the register, or the number of rows.
static uint32_t FindGaugeRegister(const Notebook* notebook, uint8_t number) {
  const uint32_t count = RowCount(notebook, kImageGauge);
  uint32_t row = 0;
  while (row < count && notebook->gauge[row].number != number) ++row;
  return row;
}

// data[0] is the selector, data[1] the gauge register or the index of a latched byte.
uint32_t GaugeExchange(Notebook* notebook, const uint8_t* data, uint8_t* value) {
  ImageHeader* header = notebook->header;
  const uint32_t rows = RowCount(notebook, kImageGauge);
  if (data[0] == kByteCount || data[0] == kLatchRegister) {
    const uint32_t row = FindGaugeRegister(notebook, data[1]);
    const uint32_t status = row < rows ? notebook->gauge[row].status : header->unlisted.status;
    if (data[0] == kLatchRegister) header->latched = (uint16_t)(row < rows && status == 0 ? row + 1 : 0);
    *value = row < rows ? notebook->gauge[row].count : header->unlisted.value;
    return status;
  }
  if (data[0] == kLatchedByte && header->latched != 0) {
    const ImageGaugeRegister* latched = &notebook->gauge[header->latched - 1];
    if (data[1] < latched->length) {
      *value = latched->bytes[data[1]];
      return kEcSuccess;
    }
  }
  return ReadCell(notebook, &header->unlisted, value);
}
