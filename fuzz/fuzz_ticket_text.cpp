// Tickets read from a text file (读取组号文本过滤): the bytes decoded as the reader decodes a file,
// read from a start column that the first byte chooses, and the tickets made into zuheRead.
#include "fuzz_support.h"
#include "generation/ticket_text.h"

SQ_FUZZ_START_APPLICATION

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray input = fuzz_support::bytes(data, size);
    if (input.isEmpty()) return 0;
    const int start = static_cast<uint8_t>(input[0]) % 12;  // 0 (refused) .. 11
    const ticket_text::ReadResult r = ticket_text::readText(ticket_text::decode(input.mid(1)), start, {35, 12});
    const auto table = ticket_text::toTable(r.tickets);
    for (uint64_t row = 0; row < table->rowCount(); ++row)
        if (table->numberColumn(1)[row] > 35 || table->numberColumn(7)[row] > 12) __builtin_trap();
    return 0;
}
