// Word lists for input help and for reading times and numbers aloud: written ones from words.txt, and the regular ones.
#include "tools/payload/Maker.h"

#include <array>

namespace payload {

namespace {

struct Digit {
    std::string_view strHan;
    std::string_view strPinyin;
};

constexpr std::array<Digit, 10> kDigits = { { { "零", "ling2" },
                                              { "一", "yi1" },
                                              { "二", "er4" },
                                              { "三", "san1" },
                                              { "四", "si4" },
                                              { "五", "wu3" },
                                              { "六", "liu4" },
                                              { "七", "qi1" },
                                              { "八", "ba1" },
                                              { "九", "jiu3" } } };

struct Reading {
    std::string strHan;
    std::string strPinyin;

    void Append(std::string_view strMoreHan, std::string_view strMorePinyin)
    {
        strHan += strMoreHan;
        if (!strPinyin.empty() && !strMorePinyin.empty())
            strPinyin += ' ';
        strPinyin += strMorePinyin;
    }
    void AppendDigit(int nDigit)
    {
        const Digit& digit = kDigits[static_cast<std::size_t>(nDigit)];
        Append(digit.strHan, digit.strPinyin);
    }
};

// A number below ten thousand as it is read: 10 is "shi2", 110 "yi1 bai3 yi1 shi2", 101 has a zero in its gap.
Reading ReadNumber(int nNumber)
{
    struct Place {
        int nValue;
        std::string_view strHan, strPinyin;
    };
    constexpr Place kPlaces[] = { { 1000, "千", "qian1" }, { 100, "百", "bai3" }, { 10, "十", "shi2" }, { 1, "", "" } };
    Reading reading;
    if (nNumber == 0)
        reading.AppendDigit(0);
    bool bGap = false;
    for (const Place& place : kPlaces) {
        const int nDigit = nNumber / place.nValue % 10;
        if (nDigit == 0) {
            bGap = !reading.strHan.empty();
            continue;
        }
        if (bGap)
            reading.AppendDigit(0);
        bGap = false;
        if (nDigit != 1 || place.nValue != 10 || !reading.strHan.empty())
            reading.AppendDigit(nDigit);
        reading.Append(place.strHan, place.strPinyin);
    }
    return reading;
}

std::string Row(const std::string& strKey, const Reading& reading)
{
    return strKey + "\t" + reading.strHan + "\t" + reading.strPinyin + "\n";
}

std::string TwoDigits(int nNumber)
{
    return { static_cast<char>('0' + nNumber / 10), static_cast<char>('0' + nNumber % 10) };
}

std::string Numbers()
{
    std::string strList;
    for (int nNumber = 0; nNumber < 5000; ++nNumber)
        strList += Row(std::to_string(nNumber), ReadNumber(nNumber));
    return strList;
}

// Every minute of the day.
std::string Times()
{
    std::string strList;
    for (int nMinute = 0; nMinute < 24 * 60; ++nMinute) {
        Reading reading = ReadNumber(nMinute / 60);
        reading.Append("点", "dian3");
        if (const int nRest = nMinute % 60; nRest == 0) {
            reading.Append("整", "zheng3");
        } else {
            if (nRest < 10)
                reading.AppendDigit(0);
            const Reading rest = ReadNumber(nRest);
            reading.Append(rest.strHan, rest.strPinyin);
            reading.Append("分", "fen1");
        }
        strList += Row(TwoDigits(nMinute / 60) + ":" + TwoDigits(nMinute % 60), reading);
    }
    return strList;
}

std::string Dates()
{
    constexpr int kDaysOfMonth[] = { 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 };
    std::string strList;
    for (int nMonth = 1; nMonth <= 12; ++nMonth) {
        for (int nDay = 1; nDay <= kDaysOfMonth[nMonth - 1]; ++nDay) {
            Reading reading = ReadNumber(nMonth);
            reading.Append("月", "yue4");
            const Reading day = ReadNumber(nDay);
            reading.Append(day.strHan, day.strPinyin);
            reading.Append("日", "ri4");
            strList += Row(TwoDigits(nMonth) + "-" + TwoDigits(nDay), reading);
        }
    }
    return strList;
}

// The syllables of Mandarin with their four tones. words.txt's record "Finals" says which finals an initial takes:
// "b | a o ai ...", "-" for none.
std::string Syllables(const Record& finals)
{
    std::string strList;
    for (const std::string& strLine : finals.lines) {
        const std::vector<std::string> fields = SplitFields(strLine);
        const std::string strInitial = fields.front() == "-" ? "" : fields.front();
        const std::string& strFinals = fields.back();
        for (std::size_t nStart = 0; nStart < strFinals.size();) {
            const std::size_t nEnd = std::min(strFinals.find(' ', nStart), strFinals.size());
            for (const char* pszTone : { "1", "2", "3", "4" })
                strList += strInitial + strFinals.substr(nStart, nEnd - nStart) + pszTone + "\n";
            nStart = nEnd + 1;
        }
    }
    return strList;
}

} // namespace

void MakeWords(const std::filesystem::path& sources, Output* pOutput)
{
    for (const Record& record : ReadRecords(sources / "words.txt", pOutput)) {
        if (record.strTitle == "Finals") {
            pOutput->Add("Words/Syllables.txt", Syllables(record));
            continue;
        }
        std::string strList;
        for (const std::string& strLine : record.lines) {
            const std::vector<std::string> fields = SplitFields(strLine);
            for (std::size_t i = 0; i < fields.size(); ++i)
                strList += (i ? "\t" : "") + fields[i];
            strList += '\n';
        }
        pOutput->Add("Words/" + record.strTitle + ".txt", strList);
    }
    pOutput->Add("Words/Numbers.txt", Numbers());
    pOutput->Add("Words/Times.txt", Times());
    pOutput->Add("Words/Dates.txt", Dates());
}

} // namespace payload
