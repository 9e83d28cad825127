// One register: what a read answers and what a write does.
#include "model.h"

static uint32_t ReadItem(const Notebook* notebook, const ImageCell* cell, uint8_t* value) {
  const ImageList* list = &notebook->lists[cell->target];
  const ImageCell* unlisted = &notebook->header->unlisted;
  if (list->selected >= list->items) {
    *value = unlisted->value;
    return unlisted->status;
  }
  *value = notebook->list_values[list->first_value + list->selected * list->columns + cell->value];
  return kEcSuccess;
}

uint32_t ReadCell(const Notebook* notebook, const ImageCell* cell, uint8_t* value) {
  ImageHandshake* handshake = &notebook->header->handshake;
  if (cell->status != kEcSuccess) return cell->status;
  switch (cell->on_read) {
    case kReadItem:
      return ReadItem(notebook, cell, value);
    case kReadSelected:
      *value = notebook->lists[cell->target].selected;
      return kEcSuccess;
    case kReadHandshake:
      *value = PollHandshake(handshake);
      return kEcSuccess;
    case kReadHandshakeData:
      *value = handshake->ready ? handshake->data[cell->value] : 0;
      return kEcSuccess;
    default:
      *value = cell->value;
      return kEcSuccess;
  }
}

static void StoreItem(Notebook* notebook, const ImageCell* cell, uint8_t value) {
  const ImageList* list = &notebook->lists[cell->target];
  if (list->selected >= list->items) return;
  notebook->list_values[list->first_value + list->selected * list->columns + cell->value] = value;
}

uint32_t WriteCell(Notebook* notebook, ImageCell* block, ImageCell* cell, uint8_t value) {
  if (cell->status != kEcSuccess) return cell->status;
  switch (cell->on_write) {
    case kWriteStored:
      if (cell->on_read == kReadItem) {
        StoreItem(notebook, cell, value);
      } else if (cell->on_read == kReadByte) {
        cell->value = value;
      }
      break;
    case kWriteSelect:
      notebook->lists[cell->target].selected = value;
      break;
    case kWriteClear:
      if (block[cell->target].on_read == kReadByte) block[cell->target].value &= (uint8_t)~value;
      break;
    case kWriteRequest:
      RequestHandshake(&notebook->header->handshake, value);
      break;
    default:
      break;
  }
  return kEcSuccess;
}
