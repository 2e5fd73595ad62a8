// Texts of reports against standard strings: how they are made, shared and joined, and the report of an exception.
#include "Vorn/Exception.h"
#include "Vorn/String/String.h"

#include "Reference/SampleTexts.h"
#include "Support/Stream.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using Vorn::ExceptionString;

constexpr unsigned int TEXTS = 5;
constexpr int LONGEST_TEXT = 2000;
constexpr char LITERAL[] = "Vorn::String::operator +=";

/// What a text is: characters that are only pointed at, or a block that copies share.
struct Model {
    const char* literal = nullptr;
    int size = 0;
    std::shared_ptr<std::string> block;

    bool isNull() const { return !literal && !block; }
    /// True for a length without characters, which must not be read.
    bool isUnreadable() const { return isNull() && size != 0; }
    std::string content() const {
        if (block) return *block;
        return literal ? std::string(literal, static_cast<std::size_t>(size)) : std::string();
    }
};

Model dynamicText(const std::string& content) {
    return {nullptr, static_cast<int>(content.size()), std::make_shared<std::string>(content)};
}

std::string s_logged;
int s_logCount = 0;

void log(const char* text) {
    s_logged = text;
    ++s_logCount;
}

class Play {
public:
    explicit Play(Stream stream) : m_stream(stream) {}

    void run() {
        while (!m_stream.ended()) {
            step();
            compare();
        }
    }

private:
    void step() {
        const unsigned int choice = m_stream.next();
        const unsigned int to = choice % TEXTS;
        const unsigned int from = choice / TEXTS % TEXTS;
        switch (m_stream.below(9)) {
        case 0: setStatic(to, m_stream.next()); break;
        case 1: create(to, m_stream.next()); break;
        case 2: {
            const std::string content = bytes(m_stream.below(24));
            m_texts[to] = ExceptionString(content, 0.0f);
            m_models[to] = dynamicText(content);
            break;
        }
        case 3: assign(to, from); break;
        case 4: join(to, from, m_stream.next()); break;
        case 5: setFromString(to); break;
        case 6: report(m_stream.next(), m_stream.next()); break;
        case 7: reportFormatted(to, from, m_stream.next()); break;
        default: {
            const ExceptionString copy(m_texts[from]);
            const Model model(m_models[from]);
            require(copy.refCount() == m_models[from].block.use_count(), "a copy counts otherwise");
            m_texts[to] = copy;
            m_models[to] = model;
            break;
        }
        }
    }

    std::string bytes(unsigned int count) {
        std::string content;
        while (count-- > 0) content.push_back(static_cast<char>(m_stream.next()));
        return content;
    }

    void setStatic(unsigned int to, unsigned int choice) {
        const int size = static_cast<int>(choice % sizeof(LITERAL));
        const char* const literal = choice < 0xF0 ? LITERAL : nullptr;
        if (choice % 2 == 0)
            m_texts[to].setStaticString(literal, size);
        else
            m_texts[to] = ExceptionString(literal, size);
        m_models[to] = {literal, size, nullptr};
    }

    void create(unsigned int to, unsigned int choice) {
        const int capacity = static_cast<int>(choice % 32);
        const std::string content = bytes(choice / 32 * static_cast<unsigned int>(capacity) / 7);
        m_models[to] = Model(); // its reference is released first
        char* const text = m_texts[to].createString(capacity);
        require(m_texts[to].creating() && m_texts[to].dynamic() && m_texts[to].size() == capacity &&
                    text[capacity] == 0 && m_texts[to].refCount() == 1,
                "a text that is being created has another state");
        content.copy(text, content.size());
        m_texts[to].doneCreateString(static_cast<int>(content.size()));
        m_models[to] = dynamicText(content);
    }

    // The only holder of a block loses it when it is assigned to itself.
    void assign(unsigned int to, unsigned int from) {
        const bool isLost = to == from && m_models[to].block.use_count() == 1;
        ExceptionString& target = m_texts[to];
        target = m_texts[from];
        m_models[to] = isLost ? Model() : Model(m_models[from]);
    }

    void join(unsigned int to, unsigned int first, unsigned int choice) {
        const unsigned int parts[] = {first, choice % TEXTS, choice / TEXTS % TEXTS, choice / 25 % TEXTS};
        const unsigned int count = 2 + choice % 3;
        std::string content;
        for (unsigned int i = 0; i < count; ++i) {
            if (m_models[parts[i]].isUnreadable()) return;
            content += m_models[parts[i]].content();
        }
        if (content.size() > LONGEST_TEXT) return;
        const ExceptionString& a = m_texts[parts[0]];
        const ExceptionString& b = m_texts[parts[1]];
        const ExceptionString& c = m_texts[parts[2]];
        const ExceptionString& d = m_texts[parts[3]];
        if (choice & 0x80) {
            const ExceptionString joined(count == 2 ? a + b : count == 3 ? a + b + c : a + b + c + d);
            require(joined.isNull() == content.empty() && text(joined) == content, "another joined text");
            return;
        }
        switch (count) {
        case 2: m_texts[to] = a + b; break;
        case 3: m_texts[to] = a + b + c; break;
        default: m_texts[to] = a + b + c + d; break;
        }
        if (!content.empty())
            m_models[to] = dynamicText(content);
        else if (m_models[to].block)
            m_models[to] = Model();
    }

    // From a string in either encoding. U+0000, and U+007F beside a surrogate pair, are measured otherwise than they
    // are written.
    void setFromString(unsigned int to) {
        reference::Codes codes;
        const unsigned int choice = m_stream.next();
        for (unsigned int i = choice % 8; i > 0; --i) {
            const unsigned int code = m_stream.next() << 8 | m_stream.next();
            codes.push_back(code != 0 && code != 0x7F && reference::isCharacter(code) ? code : 'x');
        }
        const reference::Bytes utf8 = reference::toUTF8(codes);
        const reference::Units utf16 = reference::toUTF16(codes);
        if (codes.empty()) {
            m_texts[to] = ExceptionString(Vorn::String(), 1.0f);
        } else if (choice & 0x80) {
            const auto size = static_cast<unsigned int>(utf16.size());
            m_texts[to] = ExceptionString(Vorn::String(utf16.data(), size, Vorn::STRING_DATA_EXTERNAL), 1.0f);
        } else {
            const auto size = static_cast<unsigned int>(utf8.size());
            m_texts[to] = ExceptionString(Vorn::String(utf8.data(), size, Vorn::STRING_DATA_EXTERNAL), 1.0f);
        }
        m_models[to] = dynamicText(std::string(utf8.begin(), utf8.end()));
    }

    static std::string text(const ExceptionString& string) {
        return string.isNull() ? std::string()
                               : std::string(string.getString(), static_cast<std::size_t>(string.size()));
    }

    static std::string reportOf(const Model& file, unsigned int line, const Model& function, const Model& type,
                                const std::string& message) {
        return file.content() + ":" + std::to_string(line) + ": " + function.content() +
               ": Exception: " + type.content() + ":" + message;
    }

    // The reports of an exception, of its copy and of the callback are one text.
    template <class Exception>
    static void compareReport(const Exception& exception, const std::string& expected, unsigned int line) {
        const std::string terminated(expected.c_str()); // a report is a C string
        require(s_logCount == 1 && s_logged == terminated, "the callback received another report");
        require(exception.getLogString() == terminated, "another report");
        require(exception.what() == exception.getLogString(), "a second report");
        const Exception copy(exception);
        require(copy.getLogString() == exception.getLogString(), "a copy has its own report");
        Vorn::AllExceptions assigned;
        assigned = exception;
        require(assigned.getLogString() == exception.getLogString(), "an assigned exception has its own report");
        require(assigned.getLine() == line && assigned.getCode() == exception.getCode(), "another line or code");
        require(assigned.getMessage() == exception.getMessage() && assigned.getType() == exception.getType() &&
                    assigned.getFile() == exception.getFile() && assigned.getFunction() == exception.getFunction(),
                "an assigned exception has other texts");
    }

    void report(unsigned int choice, unsigned int line) {
        const unsigned int type = choice % TEXTS, file = choice / 5 % TEXTS, function = choice / 25 % TEXTS;
        const unsigned int message = choice / 125;
        for (const unsigned int i : {type, file, function, message}) {
            if (m_models[i].isUnreadable()) return;
        }
        const std::string expected =
            reportOf(m_models[file], line << 24, m_models[function], m_models[type], m_models[message].content());
        if (expected.size() > LONGEST_TEXT) return;
        s_logCount = 0;
        Vorn::AllExceptions::setLogCallback(&log);
        const Vorn::Exception<4> exception(m_texts[type], m_texts[file], m_texts[function], ExceptionString(),
                                           line << 24, m_texts[message]);
        Vorn::AllExceptions::setLogCallback(nullptr);
        require(exception.getMessage() == m_texts[message].getString(), "another message");
        compareReport(exception, expected, line << 24);
    }

    void reportFormatted(unsigned int prefix, unsigned int argument, unsigned int number) {
        if (m_models[prefix].isUnreadable() || m_models[argument].isUnreadable()) return;
        const std::string inserted(m_models[argument].content().c_str());
        const std::string message = m_models[prefix].content() + inserted + "|" + std::to_string(number) + "%";
        if (message.size() > LONGEST_TEXT) return;
        const ExceptionString type(LITERAL, 4);
        const Model typeModel{LITERAL, 4, nullptr};
        s_logCount = 0;
        Vorn::AllExceptions::setLogCallback(&log);
        const Vorn::Exception<1> exception(type, type, type, type, number, m_texts[prefix], "%s|%u%%", inserted.c_str(),
                                           number);
        Vorn::AllExceptions::setLogCallback(nullptr);
        require(exception.getMessage() == std::string(message.c_str()), "another formatted message");
        compareReport(exception, reportOf(typeModel, number, typeModel, typeModel, message), number);
    }

    void compare() const {
        for (unsigned int i = 0; i < TEXTS; ++i) {
            const ExceptionString& string = m_texts[i];
            const Model& model = m_models[i];
            require(string.isNull() == model.isNull(), "another null");
            require(string.size() == model.size, "another size");
            require(string.dynamic() == (model.block != nullptr) && !string.creating(), "another state");
            require(string.refCount() == model.block.use_count(), "another number of holders");
            if (model.literal) require(string.getString() == model.literal, "a literal was copied");
            if (model.isNull()) continue;
            require(text(string) == model.content(), "another text");
            if (model.block) require(string.getString()[string.size()] == 0, "the terminator is missing");
        }
    }

    Stream m_stream;
    std::array<ExceptionString, TEXTS> m_texts;
    std::array<Model, TEXTS> m_models;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Play(Stream(data, size)).run();
    return 0;
}
