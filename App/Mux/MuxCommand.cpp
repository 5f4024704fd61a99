#include "Mux/MuxCommand.h"

#include <fmt/format.h>

#include <algorithm>

#include "FrameWriter/ExtHeads.h"
#include "Io/ErrorOutput.h"
#include "Keys/KeyOption.h"
#include "Mux/Muxer.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_example =
    "Example:\n"
    "  framesift mux --video Samples/h264/cif_baseline_25.h264 --video-codec h264 \\\n"
    "      --audio Samples/audio/g711a_8k_160.alaw --audio-codec g711a \\\n"
    "      --ivs Samples/ivs/scene.json -o out.zoav\n"
    "\n"
    "A key picture becomes an I frame: IDR or I picture and recovery point in h264, "
    "IDR, CRA or BLA in h265, I picture\n"
    "elsewhere. Units follow each other at the given rate in the order of the stream.\n"
    "--ivs takes tracked objects, lanes, counts, scenes and drawings from JSON, as Docs/ivs-json.md tells; each of "
    "its\n"
    "frames becomes a data frame at its time.\n"
    "--key enciphers the payloads of all frames by AES in ECB mode: whole blocks of 16 "
    "bytes, what is left behind\n"
    "them stays plain, and so do the heads. The same key given to \"framesift frames\" "
    "deciphers them. ECB shows\n"
    "where a payload repeats itself: it is what recorders write, not what keeps a "
    "secret well.\n"
    "The families behind wmav are older formats, without metadata, ciphers and sums (Docs/formats/legacy.md): new, "
    "new-ex and\n"
    "new-ex1 carry h264 or mpeg4 and audio, hb, zopt and mpeg4 (the stream itself) mpeg4 and audio, audio and "
    "audio-ex\n"
    "audio alone; all of them audio of one channel. In them only the next frame ends one, so that the recording ends "
    "with\n"
    "the first 4 bytes of another; but mpeg4 does not. Readers must be told of mpeg4 with --type 1.\n"
    "Exit codes: 0 done, 2 wrong usage, 3 cannot read or write, 4 an input does not hold "
    "what was named.";

constexpr uint32_t sc_maxChannels = 255;       // one byte on the wire
constexpr uint32_t sc_maxAudioFrame = 1 << 20; // more than 3 s of the highest rate

constexpr const char* sc_rates = "above 0 up to 255, as 25 or 30000/1001";
constexpr const char* sc_sizes = "WxH, as 1920x1080";
constexpr const char* sc_times = "a moment of 2000 to 2063, as 2026-01-31T10:00:00";

// An option whose text a function turns into a value; what it refuses is wrong usage.
template <class PARSE, class STORE>
CLI::Option* AddParsed(CLI::App& verb, const char* pName, const std::string& help, const std::string& allowed,
                       PARSE parse, STORE store)
{
    return verb.add_option_function<std::string>(
        pName,
        [=](const std::string& text) {
            const auto value = parse(text);
            if (!value)
                throw CLI::ValidationError(pName, "cannot take \"" + text + "\"; allowed: " + allowed);
            store(*value);
        },
        help);
}

void ReportTrack(const char* pWhat, const CTrack* pTrack)
{
    if (pTrack == nullptr)
        return;
    const std::string& name = pTrack->Source().File().Name();
    if (pTrack->Source().SkippedBytes() > 0)
        WriteErrorLine(fmt::format("{}: {} bytes belong to no {} unit and were left out", name,
                                   pTrack->Source().SkippedBytes(), pWhat));
    if (pTrack->LeftOut() > 0)
        WriteErrorLine(
            fmt::format("{}: {} units in front of the first picture size were left out", name, pTrack->LeftOut()));
}

void ReportEnd(const CMuxer& muxer)
{
    const auto units = [](const CTrack* pTrack) { return pTrack == nullptr ? 0U : pTrack->Units(); };
    const auto counted = [](uint32_t nCount, const char* pWhat) {
        return fmt::format("{} {} frame{}", nCount, pWhat, nCount == 1 ? "" : "s");
    };
    const std::string& name = muxer.Output().Name();
    const uint32_t nKeys = muxer.Video() == nullptr ? 0U : muxer.Video()->KeyUnits();
    const uint32_t nIvs = muxer.Ivs() == nullptr ? 0U : muxer.Ivs()->Units();
    for (const std::string& note : muxer.Notes())
        WriteErrorLine(fmt::format("{}: {}", name, note));
    WriteError(fmt::format("{}: {} ({} key), {}, {}, {} bytes\n", name, counted(units(muxer.Video()), "video"), nKeys,
                           counted(units(muxer.Audio()), "audio"), counted(nIvs, "IVS"),
                           muxer.Output().WrittenBytes()));
}

} // namespace

CMuxCommand::CMuxCommand(CLI::App& app)
    : m_pVerb(app.add_subcommand("mux", "Make a recording from elementary streams and metadata"))
{
    m_pVerb->footer(sc_example);
    DeclareVideo();
    DeclareAudio();
    DeclareIvs();
    DeclareRecording();
    DeclareSeal();
}

void CMuxCommand::DeclareVideo()
{
    auto* pVideo = m_pVerb->add_option("--video", m_options.videoPath, "Video stream; - is standard input");
    auto* pCodec = AddParsed(
        *m_pVerb, "--video-codec", "One of " + VideoCodecNames(), VideoCodecNames(),
        [](const std::string& text) -> std::optional<const VIDEO_CODEC_ROW*> {
            const auto* pRow = FindVideoCodec(text);
            return pRow == nullptr ? std::nullopt : std::optional(pRow);
        },
        [this](const VIDEO_CODEC_ROW* pRow) { m_options.pVideoCodec = pRow; });
    auto* pRate = AddParsed(*m_pVerb, "--fps", "Pictures in a second, as 25 or 30000/1001 (default 25)", sc_rates,
                            &ParseFrameRate, [this](FRAME_RATE rate) { m_options.rate = rate; });
    auto* pSize = AddParsed(*m_pVerb, "--size", "Picture size WxH instead of that in the stream", sc_sizes,
                            &ParsePictureSize, [this](PICTURE_SIZE size) { m_options.size = size; });
    pVideo->needs(pCodec);
    for (auto* pOption : {pCodec, pRate, pSize})
        pOption->needs(pVideo);
}

void CMuxCommand::DeclareAudio()
{
    RAW_AUDIO& raw = m_options.rawAudio;
    auto* pAudio = m_pVerb->add_option("--audio", m_options.audioPath, "Audio stream; - is standard input");
    auto* pCodec = AddParsed(
        *m_pVerb, "--audio-codec", "One of " + AudioCodecNames(), AudioCodecNames(),
        [](const std::string& text) -> std::optional<const AUDIO_CODEC_ROW*> {
            const auto* pRow = FindAudioCodec(text);
            return pRow == nullptr ? std::nullopt : std::optional(pRow);
        },
        [this](const AUDIO_CODEC_ROW* pRow) { m_options.pAudioCodec = pRow; });
    auto* pRate = m_pVerb->add_option("--audio-rate", raw.nSamplesPerSec,
                                      "Samples in a second, of audio without heads (default 8000)");
    auto* pChannels =
        m_pVerb->add_option("--audio-channels", raw.nChannels, "Channels, of audio without heads (default 1)");
    auto* pFrame = m_pVerb->add_option("--audio-frame", raw.nFrameSize,
                                       "Bytes in a frame, of audio without heads (default: 20 ms)");
    pRate->check(CLI::Validator(
        [](const std::string& text) {
            uint32_t nRate = 0;
            const bool bKnown = CLI::detail::lexical_cast(text, nRate) && SampleTypeOf(nRate).has_value();
            return bKnown ? std::string() : text + " Hz has no code; those that have one: " + SampleRates();
        },
        ""));
    pChannels->check(CLI::Range(1U, sc_maxChannels));
    pFrame->check(CLI::Range(1U, sc_maxAudioFrame));
    pAudio->needs(pCodec);
    for (auto* pOption : {pCodec, pRate, pChannels, pFrame})
        pOption->needs(pAudio);
}

void CMuxCommand::DeclareIvs()
{
    m_pVerb->add_option("--ivs", m_options.ivsPath,
                        "Intelligent video metadata (IVS) as a JSON description; - is standard input");
}

void CMuxCommand::DeclareRecording()
{
    AddParsed(*m_pVerb, "--start",
              "Time of the first frame on the recorder's clock (default 2026-01-31T10:00:00; years 2000 to 2063)",
              sc_times, &ParseClock, [this](CLOCK_MS nStart) {
                  m_options.nStart = nStart;
                  m_options.bStartGiven = true;
              });
    AddParsed(
        *m_pVerb, "--family", "One of " + FamilyNames() + " (default zoav)", FamilyNames(),
        [](const std::string& text) -> std::optional<const FAMILY_ROW*> {
            const auto* pRow = FindFamily(text);
            return pRow == nullptr ? std::nullopt : std::optional(pRow);
        },
        [this](const FAMILY_ROW* pFamily) { m_options.pFamily = pFamily; });
    m_pVerb->add_option("-o,--output", m_options.outputPath, "The recording; - is standard output")->required();
}

void CMuxCommand::DeclareSeal()
{
    SEAL_OPTIONS& seal = m_options.seal;
    auto* pKey = AddKeyOption(*m_pVerb, seal.key);
    auto* pHead = AddParsed(
        *m_pVerb, "--cipher-head",
        "With --key: 89 to encipher whole payloads, 95 for their first " + std::to_string(gsk_maxPart) +
            " bytes at most (default 89)",
        "89, 95",
        [](const std::string& text) {
            const auto head = text == "95" ? CIPHER_HEAD::Part : CIPHER_HEAD::Whole;
            return text == "89" || text == "95" ? std::optional(head) : std::nullopt;
        },
        [&seal](CIPHER_HEAD eHead) { seal.eHead = eHead; });
    pHead->needs(pKey);
    const std::map<std::string, CHECKSUM> checksums = {
        {"sum32", CHECKSUM::Sum32}, {"xor32", CHECKSUM::Xor32}, {"crc32", CHECKSUM::Crc32}};
    AddParsed(
        *m_pVerb, "--checksum", "Add a sum of each payload, as it is written: sum32, xor32 or crc32",
        "sum32, xor32, crc32",
        [checksums](const std::string& text) {
            const auto found = checksums.find(text);
            return found == checksums.end() ? std::nullopt : std::optional(found->second);
        },
        [&seal](CHECKSUM eKind) { seal.checksum = eKind; });
}

void CMuxCommand::CheckTogether() const
{
    const auto inputs = {m_options.videoPath, m_options.audioPath, m_options.ivsPath};
    if (std::all_of(inputs.begin(), inputs.end(), [](const std::string& path) { return path.empty(); }))
        throw CAppError(EXIT_CODE::Usage, "mux needs one of --video, --audio and --ivs at least");
    if (std::count(inputs.begin(), inputs.end(), "-") > 1)
        throw CAppError(EXIT_CODE::Usage, "only one input can come from standard input");
    RequireFamilyCarries(m_options);
}

EXIT_CODE CMuxCommand::Run()
{
    CheckTogether();
    CMuxer muxer(m_options);
    muxer.Run();
    ReportTrack("video", muxer.Video());
    ReportTrack("audio", muxer.Audio());
    ReportEnd(muxer);
    return EXIT_CODE::Done;
}

} // namespace Marvane::FrameSift
