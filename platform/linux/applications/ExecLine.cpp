#include "platform/linux/applications/ExecLine.hpp"

#include <cstddef>

namespace tessaly {

namespace {

/// Reads a line character by character.
class ExecReader {
public:
    ExecReader(std::string_view line, const ExecFields &fields) : m_line(line), m_fields(fields) {}

    std::vector<std::string> words()
    {
        while (m_isValid && m_position < m_line.size()) {
            const char letter = m_line[m_position++];
            if (letter == ' ') {
                endWord();
            } else if (letter == '"') {
                readQuoted();
            } else if (letter == '%') {
                readField();
            } else {
                // Outside quotes these have no defined meaning without a shell.
                // A line that breaks the rules is refused as a whole: running half of a command
                // could do harm.
                m_isValid = isFree(letter);
                append(letter);
            }
        }
        endWord();
        return m_isValid ? m_words : std::vector<std::string>();
    }

private:
    static bool isFree(char letter)
    {
        constexpr std::string_view reserved = "\t\n'\\><~|&;$*?#()`";
        return reserved.find(letter) == std::string_view::npos;
    }

    void append(char letter)
    {
        m_word += letter;
        m_hasWord = true;
    }

    /// Several blanks in a row end one word; "" is a word, though an empty one.
    void endWord()
    {
        if (m_hasWord) {
            m_words.push_back(m_word);
        }
        m_word.clear();
        m_hasWord = false;
    }

    /// Reads up to the closing quote. A backslash before a character that needs it is dropped.
    void readQuoted()
    {
        constexpr std::string_view escapable = "\"`$\\";
        m_hasWord = true; // also when there is nothing between the quotes
        while (m_position < m_line.size()) {
            char letter = m_line[m_position++];
            if (letter == '"') {
                return;
            }
            if (letter == '%') {
                readField();
                continue;
            }
            if (letter == '\\' && m_position < m_line.size() &&
                escapable.find(m_line[m_position]) != std::string_view::npos) {
                letter = m_line[m_position++];
            }
            m_word += letter;
        }
        // The closing quote is missing.
        m_isValid = false;
    }

    void readField()
    {
        const char code = m_position < m_line.size() ? m_line[m_position++] : '\0';
        switch (code) {
        case '%':
            append('%');
            return;
        case 'c':
            // Into the word at hand: a name with blanks stays one argument, as no shell sees it.
            m_word += m_fields.name;
            m_hasWord = true;
            return;
        case 'k':
            m_word += m_fields.path;
            m_hasWord = true;
            return;
        case 'i':
            if (!m_fields.icon.empty()) {
                endWord();
                // Two arguments, as the rules have it.
                m_words.emplace_back("--icon");
                m_word = m_fields.icon;
                m_hasWord = true;
            }
            return;
        default:
            // Files and URLs; the codes from "d" on are deprecated, and are to be ignored.
            constexpr std::string_view codesForFiles = "fFuUdDnNvm";
            m_isValid =
                m_isValid && code != '\0' && codesForFiles.find(code) != std::string_view::npos;
        }
    }

    std::string_view m_line;
    const ExecFields &m_fields;
    std::size_t m_position = 0;
    std::vector<std::string> m_words;
    std::string m_word;
    bool m_hasWord = false;
    bool m_isValid = true;
};

} // namespace

std::vector<std::string> wordsOfExecLine(std::string_view line, const ExecFields &fields)
{
    std::vector<std::string> words = ExecReader(line, fields).words();
    // The standard forbids "=" in the program's name: "env" would take it for a variable.
    if (!words.empty() && words.front().find('=') != std::string::npos) {
        words.clear();
    }
    return words;
}

} // namespace tessaly
