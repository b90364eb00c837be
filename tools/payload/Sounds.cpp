// The sounds: melodies and noises of sounds.txt, played by a few synthetic instruments.
#include "tools/payload/Maker.h"
#include "tools/payload/WholeNumbers.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

namespace payload {

namespace {

constexpr int kRate = 22050;    // samples a second
constexpr int kLoopRate = 8000; // of the hold music
// One turn of the hold music.
constexpr int kLoopSamples = 16 * kLoopRate;

// How a tone sounds: the strength of its first partials in 1/16, how fast it fades (its half-life in ms; 0: it stays),
// and how long it takes to swell (ms).
struct Instrument {
    std::string_view strName;
    std::array<int, 6> partials;
    int nHalfLife;
    int nSwell;
};

constexpr Instrument kInstruments[] = {
    { "bell", { 16, 0, 9, 7, 0, 5 }, 240, 2 },   { "flute", { 16, 3, 2, 0, 0, 0 }, 0, 40 },
    { "marimba", { 16, 0, 0, 8, 0, 2 }, 70, 1 }, { "strings", { 16, 10, 8, 6, 4, 3 }, 0, 120 },
    { "pluck", { 16, 11, 7, 5, 3, 2 }, 120, 1 }, { "organ", { 16, 12, 0, 8, 0, 6 }, 0, 15 },
    { "glass", { 16, 0, 0, 0, 11, 7 }, 420, 6 },
};

const Instrument* FindInstrument(std::string_view strName)
{
    const auto pFound = std::find_if(std::begin(kInstruments), std::end(kInstruments),
                                     [&](const Instrument& i) { return i.strName == strName; });
    return pFound == std::end(kInstruments) ? nullptr : pFound;
}

// The frequency of a note such as "C4", "F#5", in 1/256 Hz. Nothing: no such note.
std::optional<int> Frequency(std::string_view strNote)
{
    constexpr std::string_view kNames = "C D EF G A B"; // a semitone a character
    constexpr int kOctave4[] = {
        66977, 70959, 75179, 79649, 84385, 89403, 94719, 100351, 106319, 112640, 119338, 126434
    };
    if (strNote.size() < 2 || strNote[0] == ' ')
        return std::nullopt;
    std::size_t nSemitone = kNames.find(strNote[0]);
    if (nSemitone == std::string_view::npos)
        return std::nullopt;
    if (strNote[1] == '#')
        nSemitone = (nSemitone + 1) % std::size(kOctave4);
    const int nOctave = strNote.back() - '0';
    if (nOctave < 1 || nOctave > 7)
        return std::nullopt;
    return nOctave >= 4 ? kOctave4[nSemitone] << (nOctave - 4) : kOctave4[nSemitone] >> (4 - nOctave);
}

using Samples = std::vector<int>; // 16 bits and room for sums

// Adds one tone that begins at nStart and lasts nLength samples.
void AddTone(const Instrument& instrument, int nFrequency, int nRate, int nStart, int nLength, Samples* pSamples)
{
    constexpr int kFull = 1 << 16;
    const int nSwell = std::max(1, instrument.nSwell * nRate / 1000);
    const int nRelease = std::min(nLength, nRate / 50);
    // 0.693 is the natural logarithm of 2: the loudness lost in one sample, in units of 2^-30.
    const std::int64_t nLoss =
        instrument.nHalfLife ? 744'261'118LL * 1000 / (std::int64_t(instrument.nHalfLife) * nRate) : 0;
    std::int64_t nLoudness = std::int64_t(kFull) << 14;
    const auto nTo = std::min(pSamples->size(), static_cast<std::size_t>(nStart) + static_cast<std::size_t>(nLength));
    int i = 0;
    for (auto nAt = static_cast<std::size_t>(nStart); nAt < nTo; ++nAt, ++i) {
        const auto nPhase = static_cast<std::uint32_t>(std::int64_t(i) * nFrequency * 256 / nRate);
        int nWave = 0;
        for (std::size_t nPartial = 0; nPartial < instrument.partials.size(); ++nPartial) {
            if (instrument.partials[nPartial])
                nWave += Sine(nPhase * static_cast<std::uint32_t>(nPartial + 1)) * instrument.partials[nPartial] / 64;
        }
        std::int64_t nEnvelope = nLoudness >> 14;
        nEnvelope = nEnvelope * std::min(i, nSwell) / nSwell;
        nEnvelope = nEnvelope * std::min(nLength - i, nRelease) / nRelease;
        (*pSamples)[nAt] += static_cast<int>(nWave * nEnvelope / kFull);
        nLoudness -= nLoudness * nLoss >> 30;
    }
}

// Plays a melody: notes "C4", with "+" between the tones of a chord, ":2" behind one that lasts two beats; "-" is a
// rest. A tone of a fading instrument sounds on under the next ones. FALSE: a word is no note.
bool Play(const Instrument& instrument, const std::vector<std::string>& notes, int nRate, int nBeat, Samples* pSamples)
{
    int nAt = 0;
    for (const std::string& strNote : notes) {
        const std::size_t nColon = strNote.find(':');
        const int nBeats = nColon == std::string::npos ? 1 : std::atoi(strNote.c_str() + nColon + 1);
        const std::string strChord = strNote.substr(0, nColon);
        for (std::size_t nStart = 0; strChord != "-" && nStart <= strChord.size();) {
            const std::size_t nEnd = std::min(strChord.find('+', nStart), strChord.size());
            const std::optional<int> frequency = Frequency(std::string_view(strChord).substr(nStart, nEnd - nStart));
            if (!frequency)
                return false;
            const int nLength = instrument.nHalfLife ? nRate * instrument.nHalfLife / 140 : nBeats * nBeat;
            AddTone(instrument, *frequency, nRate, nAt, nLength, pSamples);
            nStart = nEnd + 1;
        }
        nAt += nBeats * nBeat;
    }
    return true;
}

// Makes a melody as loud as it can be without cutting its waves, and lets its end, wherever it falls, die away.
void Finish(Samples* pSamples)
{
    constexpr int kPeak = 28000;
    constexpr std::size_t kFade = kRate / 33;
    const auto [pLow, pHigh] = std::minmax_element(pSamples->begin(), pSamples->end());
    const int nPeak = std::max({ 1, -*pLow, *pHigh });
    for (std::size_t i = 0; i < pSamples->size(); ++i) {
        const auto nLeft = static_cast<int>(std::min(kFade, pSamples->size() - i));
        (*pSamples)[i] = static_cast<int>(std::int64_t((*pSamples)[i]) * kPeak / nPeak * nLeft / std::int64_t(kFade));
    }
}

// Noise that swells and ebbs, dull for a large nSoftness: rain, wind, waves, a room.
void AddNoise(std::uint32_t nSeed, int nSoftness, int nWave, Samples* pSamples)
{
    Noise noise(nSeed);
    std::int64_t nLevel = 0;
    for (std::size_t i = 0; i < pSamples->size(); ++i) {
        nLevel += ((noise.Next(65536) - 32768) * 64LL - nLevel) / nSoftness;
        const int nSwell = 24000 + Sine(static_cast<std::uint32_t>(i * static_cast<std::size_t>(nWave))) / 4;
        (*pSamples)[i] += static_cast<int>(nLevel / 64 * nSwell / 32768);
    }
}

void Little(std::string* pBytes, std::uint32_t nValue, int nBytes)
{
    for (int i = 0; i < nBytes; ++i)
        pBytes->push_back(static_cast<char>(nValue >> 8 * i & 0xFF));
}

std::string WaveFile(const Samples& samples)
{
    const auto nBytes = static_cast<std::uint32_t>(samples.size() * 2);
    std::string strFile = "RIFF";
    Little(&strFile, 36 + nBytes, 4);
    strFile += "WAVEfmt ";
    Little(&strFile, 16, 4);
    Little(&strFile, 1, 2); // linear
    Little(&strFile, 1, 2); // one channel
    Little(&strFile, kRate, 4);
    Little(&strFile, kRate * 2, 4);
    Little(&strFile, 2, 2);
    Little(&strFile, 16, 2);
    strFile += "data";
    Little(&strFile, nBytes, 4);
    for (const int nSample : samples)
        Little(&strFile, static_cast<std::uint32_t>(std::clamp(nSample, -32767, 32767)), 2);
    return strFile;
}

// An .au sound of 8 linear bits: its length may be any number of bytes, which the packer needs.
std::string LoopFile(const Samples& samples)
{
    std::string strFile = ".snd";
    for (const std::uint32_t nField :
         { 28U, static_cast<std::uint32_t>(samples.size()), 2U, static_cast<std::uint32_t>(kLoopRate), 1U, 0U }) {
        for (int nShift = 24; nShift >= 0; nShift -= 8)
            strFile.push_back(static_cast<char>(nField >> nShift & 0xFF));
    }
    for (const int nSample : samples)
        strFile.push_back(static_cast<char>(std::clamp(nSample / 256, -127, 127)));
    return strFile;
}

std::vector<std::string> WordsOf(const std::vector<std::string>& lines)
{
    std::vector<std::string> words;
    for (const std::string& strLine : lines) {
        for (std::size_t nStart = 0; nStart < strLine.size();) {
            const std::size_t nEnd = std::min(strLine.find(' ', nStart), strLine.size());
            if (nEnd > nStart)
                words.push_back(strLine.substr(nStart, nEnd - nStart));
            nStart = nEnd + 1;
        }
    }
    return words;
}

// [name | instrument | ms a beat | ms in all], then the notes.
bool MakeMelody(const std::vector<std::string>& fields, const Record& record, Output* pOutput)
{
    const Instrument* pInstrument = fields.size() == 4 ? FindInstrument(fields[1]) : nullptr;
    if (!pInstrument)
        return false;
    const int nBeat = std::atoi(fields[2].c_str());
    const int nLength = std::atoi(fields[3].c_str());
    if (nBeat <= 0 || nLength <= 0 || nLength > 60'000)
        return false;
    Samples samples(static_cast<std::size_t>(nLength) * kRate / 1000);
    if (!Play(*pInstrument, WordsOf(record.lines), kRate, nBeat * kRate / 1000, &samples))
        return false;
    Finish(&samples);
    pOutput->Add("Sounds/" + fields[0] + ".wav", WaveFile(samples));
    return true;
}

// [name | noise | softness | ms in all], then the swells' speed.
bool MakeNoise(const std::vector<std::string>& fields, const Record& record, Output* pOutput)
{
    const int nSoftness = std::atoi(fields[2].c_str());
    const int nLength = std::atoi(fields[3].c_str());
    if (nSoftness <= 0 || nLength <= 0 || nLength > 60'000 || record.lines.empty())
        return false;
    Samples samples(static_cast<std::size_t>(nLength) * kRate / 1000);
    AddNoise(static_cast<std::uint32_t>(nLength + nSoftness), nSoftness, std::atoi(record.lines[0].c_str()), &samples);
    pOutput->Add("Sounds/" + fields[0] + ".wav", WaveFile(samples));
    return true;
}

// Plays one voice of the hold music: a triangle wave of a whole number of
// samples a turn, fading in steps. It repeats itself
// so exactly that minutes of it cost next to nothing in the cabinet, whose compression starts afresh every 32 kB.
bool PlayTriangle(const std::vector<std::string>& notes, int nBeat, Samples* pSamples)
{
    constexpr int kSteps = 8;
    std::size_t nAt = 0;
    for (const std::string& strNote : notes) {
        const std::optional<int> frequency = Frequency(strNote);
        if (!frequency)
            return false;
        const int nTurn = (kLoopRate * 256 + *frequency / 2) / *frequency;
        for (int i = 0; i < nBeat && nAt < pSamples->size(); ++i, ++nAt) {
            const int nLoudness = kSteps - i * (kSteps - 1) / nBeat;
            const int nSlope = std::abs(i % nTurn * 4 * 64 / nTurn - 2 * 64) - 64; // -64 to 64
            (*pSamples)[nAt] = nSlope * nLoudness * 256 / (2 * kSteps) * 3 / 2;
        }
    }
    return nAt == pSamples->size(); // a turn that ends in silence would stumble
}

// [name | hold | triangle | ms a beat], then the notes of one turn.
bool MakeHoldMusic(const std::vector<std::string>& fields, const Record& record, Output* pOutput)
{
    const int nBeat = std::atoi(fields[3].c_str());
    Samples turn(kLoopSamples);
    if (nBeat <= 0 || !PlayTriangle(WordsOf(record.lines), nBeat * kLoopRate / 1000, &turn))
        return false;
    pOutput->AddLoop("Sounds/" + fields[0] + ".au", LoopFile(turn));
    return true;
}

} // namespace

void MakeSounds(const std::filesystem::path& sources, Output* pOutput)
{
    for (const Record& record : ReadRecords(sources / "sounds.txt", pOutput)) {
        const std::vector<std::string> fields = SplitFields(record.strTitle);
        const std::string strKind = fields.size() == 4 ? fields[1] : "";
        const bool bMade = strKind == "noise"  ? MakeNoise(fields, record, pOutput)
                           : strKind == "hold" ? MakeHoldMusic(fields, record, pOutput)
                                               : MakeMelody(fields, record, pOutput);
        if (!bMade)
            pOutput->Fail("sounds.txt: " + record.strTitle);
    }
}

} // namespace payload
