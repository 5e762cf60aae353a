#include "ArgumentParser/Wrap.h"

#include <vector>

namespace ArgumentParser {

namespace {

// Byte offsets of the first `count` characters' ends; characters are Unicode scalar values.
size_t prefixBytes(std::string_view text, size_t count) {
    size_t i = 0;
    while (i < text.size() && count > 0) {
        ++i;
        while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) ++i;
        --count;
    }
    return i;
}

}  // namespace

std::string wrapped(std::string_view text, int width, int indent) {
    // Too narrow a screen still gets a column of one word a line.
    size_t columns = width - indent > 0 ? static_cast<size_t>(width - indent) : 1;
    std::vector<std::string_view> lines;
    std::string_view rest = text;
    while (true) {
        std::string_view chunk = rest.substr(0, prefixBytes(rest, columns));
        if (auto lineBreak = chunk.rfind('\n'); lineBreak != std::string_view::npos) {
            std::string_view block = rest.substr(0, lineBreak);
            for (size_t start = 0;;) {
                auto end = block.find('\n', start);
                lines.push_back(block.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
                if (end == std::string_view::npos) break;
                start = end + 1;
            }
            rest = rest.substr(lineBreak + 1);
        } else if (chunk.size() == rest.size()) {
            lines.push_back(rest);
            break;
        } else if (auto space = chunk.rfind(' '); space != std::string_view::npos) {
            lines.push_back(rest.substr(0, space));
            rest = rest.substr(space + 1);
        } else if (auto next = rest.find(' '); next != std::string_view::npos) {
            lines.push_back(rest.substr(0, next));
            rest = rest.substr(next + 1);
        } else {
            lines.push_back(rest);
            break;
        }
    }
    std::string result;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (i) result += '\n';
        if (!lines[i].empty()) result.append(static_cast<size_t>(indent), ' ');
        result += lines[i];
    }
    return result;
}

std::string hangingIndent(std::string_view text, int indent) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        result += text[i];
        if (text[i] == '\n' && i + 1 < text.size() && text[i + 1] != '\n') result.append(static_cast<size_t>(indent), ' ');
    }
    return result;
}

}  // namespace ArgumentParser
