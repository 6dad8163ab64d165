// Text as the telephone's language sorts and matches it: one collation for sorting and for the
// search while typing (Unicode UTS #10, punctuation counted).
//
// The normal form of a text is its primary sort key written as text: texts that differ in accents
// and case only (as far as the language takes them for the same letter) have the same normal form,
// and the normal form of a name that begins with some typed text begins with the normal form of
// that text. So names with a common typed beginning stand together in sort order, in every language.
// A normal form is for comparing, not for reading; it is void after setSortOrder().
//
// Expected in NFC: text is brought to it where it enters the telephone.

#pragma once

#include <string>
#include <string_view>

#include <framework/Export.h>

class FRAMEWORK_API Utf8Utils {
public:
    // The language's collation, "" or an unknown code giving the root collation. Before create() and
    // after destroy() the root collation serves.
    // [any-thread]
    static void create(const std::string& language);
    static void destroy();
    static void setSortOrder(const std::string& language);

    // Keeps the order of now for this thread while it lives, whatever setSortOrder() says meanwhile:
    // a sort whose order changes half way would leave its range. Those of one thread nest.
    class FRAMEWORK_API SteadyOrder {
    public:
        // [any-thread]
        SteadyOrder();
        ~SteadyOrder();

        SteadyOrder(const SteadyOrder&) = delete;
        SteadyOrder& operator=(const SteadyOrder&) = delete;

    private:
        const void* m_pBefore;
    };

    // Whether `left` sorts before `right`: a strict total order over raw texts and normal forms. A
    // normal form sorts before the raw texts that have it.
    // [any-thread]
    static bool compare(std::string_view left, std::string_view right);

    // Replaces the text by its normal form; a normal form stays as it is. Text without letters or
    // signs that count gives "".
    // [any-thread]
    static void normalize(std::string& text);

    // Byte position of `needle` in `haystack`, both normal forms: 0 at the start, -1 for none. The
    // empty needle is at 0.
    // [any-thread]
    static int find(const std::string& haystack, const std::string& needle);

    // The first character: a base letter with the marks that belong to it; "" for "". Invalid UTF-8
    // gives the replacement character.
    // [any-thread]
    static std::string getFirstUnicodeChar(const std::string& text);

    // The capital of one small letter, in the language of the collation; the letter itself where it has
    // none of one character.
    // [any-thread]
    static std::string capital(const std::string& letter);
};
