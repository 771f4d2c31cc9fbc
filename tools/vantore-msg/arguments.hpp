// Reads and checks what the user asks for before anything is sent.
#pragma once

#include "ipc/protocol.hpp"

#include <expected>
#include <string>
#include <string_view>
#include <vector>

enum class action : unsigned char { command, show, subscribe, capture, describe, record, help };

struct request {
    action what = action::help;
    vnt_ipc_msg message = VNT_MSG_COMMAND; // what is sent; unused for help
    std::string payload;
    std::string file; // target of a capture, "-" for the standard output; folder of a recording
    long pictures = 0; // after which a recording ends; 0 for no limit
    bool raw = false; // records bytes instead of PNG
};

// The error is a sentence for the user.
std::expected<request, std::string> parse_arguments(const std::vector<std::string> &words);

extern const std::string_view usage;
