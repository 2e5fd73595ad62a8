// The code and the tables of a guide, and the check that a test compiles that code.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

/// A page of the documentation.
struct GuidePage {
    struct Block {
        std::string language;
        std::string text;
    };

    explicit GuidePage(const std::string& path) {
        std::ifstream file(path);
        EXPECT_TRUE(file) << path;
        bool isCode = false;
        for (std::string line; std::getline(file, line);) {
            if (line.rfind("```", 0) == 0) {
                isCode = !isCode;
                if (isCode) blocks.push_back({line.substr(3), ""});
            } else if (isCode) {
                blocks.back().text += line + '\n';
            } else if (line.rfind("| ", 0) == 0 && line.rfind("| ---", 0) != 0) {
                rows.push_back(cellsOf(line));
            }
        }
    }

    /// The row whose first cell is `first`; without the quotes of code, as all cells.
    std::vector<std::string> row(const std::string& first) const {
        for (const std::vector<std::string>& cells : rows) {
            if (cells[0] == first) return cells;
        }
        ADD_FAILURE() << "no row " << first;
        return std::vector<std::string>(9);
    }

    static std::vector<std::string> cellsOf(const std::string& line) {
        std::vector<std::string> cells;
        std::size_t start = 2;
        for (std::size_t end = line.find(" |", start); end != std::string::npos; end = line.find(" |", start)) {
            std::string cell = line.substr(start, end - start);
            cell.erase(std::remove(cell.begin(), cell.end(), '`'), cell.end());
            cells.push_back(cell);
            start = end + 3;
        }
        return cells;
    }

    std::vector<Block> blocks;
    std::vector<std::vector<std::string>> rows;
};

/// The line without white space and without a comment at its end.
inline std::string codeOfLine(std::string line) {
    line = std::regex_replace(line, std::regex(R"((^|\s)//($|\s.*))"), "");
    line.erase(std::remove_if(line.begin(), line.end(), [](unsigned char c) { return std::isspace(c); }), line.end());
    return line;
}

/// The lines of a text, each as `codeOfLine` returns it.
inline std::string codeOfText(std::istream&& text) {
    std::string code;
    for (std::string line; std::getline(text, line);) code += codeOfLine(line);
    return code;
}

/// Expects that each block of code of the page stands in the source as it is, but for white space and comments.
inline void expectCodeStandsIn(const std::string& sourcePath, const GuidePage& page) {
    std::ifstream file(sourcePath);
    EXPECT_TRUE(file) << sourcePath;
    const std::string source = codeOfText(std::move(file));
    unsigned int count = 0;
    for (const GuidePage::Block& block : page.blocks) {
        if (block.language != "cpp") continue;
        ++count;
        const std::string code = codeOfText(std::istringstream(block.text));
        EXPECT_NE(source.find(code), std::string::npos) << "not compiled:\n" << block.text;
    }
    EXPECT_GE(count, 4u);
}
