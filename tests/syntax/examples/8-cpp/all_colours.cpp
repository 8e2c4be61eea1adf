// Counts the words of a line; a word is a run of letters.
#include <cctype>
#define LIMIT 0x7F

/* A block comment
   over two lines */
static int CountWords(const char* text) {
    int count = 0, inWord = 0;
    for (; *text != '\0'; ++text) {
        bool letter = std::isalpha(static_cast<unsigned char>(*text)) != 0;
        if (letter && !inWord)
            ++count;
        inWord = letter;
    }
    const char* quote = "a \"quoted\" word\\";  /**/ int spare = 1e3;
    return count > LIMIT ? LIMIT : count; /*/ still a comment */
}
