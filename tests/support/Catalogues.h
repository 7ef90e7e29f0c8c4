#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tonequill::test {

// Catalogues of any size that look like real ones: what tags and words there are is
// distributed as Zipf found it, 3 to 20 tags a sound, titles of 2 to 8 words. The same
// for the same seed, everywhere.
class RandomCatalogue {
public:
    explicit RandomCatalogue(std::uint32_t seed, std::size_t vocabulary = 40000) : m_random(seed)
    {
        for (std::size_t i = 0; i < vocabulary; ++i) {
            m_words.push_back(newWord(i));
            m_reach.push_back((m_reach.empty() ? 0 : m_reach.back()) + 1 / std::pow(double(i + 1), 0.95));
        }
    }

    // A document of so many sounds, some of them not loaded.
    std::string json(std::size_t sounds)
    {
        std::string text = "{\"items\":[";
        for (std::size_t i = 0; i < sounds; ++i) {
            text += i == 0 ? "{" : ",{";
            addSound(text, i);
            text += '}';
        }
        return text + "]}";
    }

    // A word of the vocabulary, by how common it is; 0 is the commonest.
    const std::string& word(std::size_t rank) const { return m_words[rank]; }
    std::size_t drawnRank() { return rankAt(fraction()); }
    std::size_t below(std::size_t count) { return std::size_t(fraction() * double(count)); }

private:
    double fraction() { return double(m_random()) / 4294967296.0; } // std's distributions differ from place to place

    std::size_t rankAt(double part) const
    {
        const auto found = std::upper_bound(m_reach.begin(), m_reach.end(), part * m_reach.back());
        return std::size_t(std::min(found, m_reach.end() - 1) - m_reach.begin());
    }

    std::string newWord(std::size_t number)
    {
        static constexpr const char* kOnsets[] = {"b", "d", "f", "g", "k", "l",  "m",  "n",
                                                  "p", "r", "s", "t", "w", "cr", "st", "sh"};
        static constexpr const char* kVowels[] = {"a", "e", "i", "o", "u", "oo", "ea", "ai"};
        static constexpr const char* kCodas[] = {"", "m", "n", "p", "r", "s", "t", "sh"};
        std::string made;
        for (std::size_t rest = number; made.empty() || rest > 0; rest /= 1024)
            made += std::string(kOnsets[rest % 16]) + kVowels[rest / 16 % 8] + kCodas[rest / 128 % 8];
        if (number % 97 == 96)
            made += "é"; // in one of a hundred there is more than ASCII
        return made;
    }

    void addSound(std::string& text, std::size_t number)
    {
        const std::string digits = std::to_string(100000 + number * 7 % 900000) + std::to_string(number % 10);
        text += "\"i\":\"" + digits + "\",\"t\":\"" + title() + "\",\"u\":\"https://cdn.example.org/previews/" +
                digits.substr(0, 3) + "/" + digits + "_" + std::to_string(m_random() % 10000000) + "-hq." +
                (below(50) == 0 ? "ogg" : "mp3") + "\",\"g\":[";
        const std::size_t tags = 3 + std::min(below(18), below(18)); // few tags are commoner than many
        for (std::size_t i = 0; i < tags; ++i)
            text += (i == 0 ? "\"" : ",\"") + tag() + "\"";
        text += "],\"d\":" + std::to_string(below(6000) / 100) + "." + std::to_string(below(100)) + ",\"c\":\"" +
                word(drawnRank()) + std::to_string(below(100)) + "\",\"p\":\"https://sounds.example.org/people/" +
                word(below(std::min<std::size_t>(2000, m_words.size()))) + "/sounds/" + digits + "/\",\"l\":\"" +
                (below(10) == 0 ? "by" : "cc0") + "\",\"r\":0." + std::to_string(below(1000));
        if (below(20) == 0)
            text += ",\"s\":\"w\"";
        if (below(100) == 0)
            text += ",\"a\":1";
    }

    std::string tag()
    {
        std::string made = word(drawnRank());
        if (below(12) == 0)
            made += '-' + word(drawnRank());
        if (below(30) == 0)
            made[0] = char(made[0] - 'a' + 'A');
        return made;
    }

    std::string title()
    {
        std::string made;
        const std::size_t words = 2 + below(7);
        for (std::size_t i = 0; i < words; ++i) {
            std::string next = below(15) == 0 ? std::to_string(below(100)) : word(drawnRank());
            if (i == 0 && next[0] >= 'a')
                next[0] = char(next[0] - 'a' + 'A');
            made += (i == 0 ? "" : below(8) == 0 ? "_" : " ") + next;
        }
        return made;
    }

    std::mt19937 m_random;
    std::vector<std::string> m_words;
    std::vector<double> m_reach; // the sum of how common the words are, up to each
};

} // namespace tonequill::test
