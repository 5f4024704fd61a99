// Deciphering a payload in place, as frames are: both forms of our own, and beside them another library's AES.
#include <benchmark/benchmark.h>

#include <openssl/evp.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Tools/KXAesBlocks.h"

namespace Marvane::FrameSift {

namespace {

using Bytes = std::vector<uint8_t>;

Bytes Payload(size_t nBytes)
{
    Bytes bytes(nBytes);
    for (size_t n = 0; n < nBytes; ++n)
        bytes[n] = static_cast<uint8_t>(n * n >> 3);
    return bytes;
}

using OPENSSL_CTX = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

OPENSSL_CTX OpenSslKey(const Bytes& key)
{
    OPENSSL_CTX ctx(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    EVP_DecryptInit_ex(ctx.get(), EVP_aes_128_ecb(), nullptr, key.data(), nullptr);
    EVP_CIPHER_CTX_set_padding(ctx.get(), 0);
    return ctx;
}

void DecryptByOpenSsl(EVP_CIPHER_CTX* pCtx, Bytes& bytes)
{
    int nWritten = 0;
    EVP_DecryptUpdate(pCtx, bytes.data(), &nWritten, bytes.data(), static_cast<int>(bytes.size()));
}

void DecryptByForm(const AES_FORM& form, const aes_ctx_t& ctx, Bytes& bytes)
{
    form.pfnDecrypt(ctx, bytes.data(), bytes.data(), bytes.size() / gsk_aesBlockSize);
}

template <typename DECRYPT>
void Register(const std::string& name, size_t nBytes, DECRYPT decrypt)
{
    const auto measure = [nBytes, decrypt](benchmark::State& state) {
        Bytes bytes = Payload(nBytes);
        for (auto _ : state) {
            decrypt(bytes);
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(nBytes));
    };
    benchmark::RegisterBenchmark(("DecryptAes128/" + std::to_string(nBytes >> 10) + "_KiB/" + name).c_str(), measure);
}

} // namespace

} // namespace Marvane::FrameSift

int main(int argc, char** argv)
{
    using namespace Marvane::FrameSift;
    benchmark::Initialize(&argc, argv);
    const Bytes key = Payload(16);
    const OPENSSL_CTX openSslKey = OpenSslKey(key);
    aes_ctx_t ctx;
    if (!aes_keyexpansion(key, ctx))
        return 1;
    for (const size_t nBytes : {size_t{64} << 10, size_t{1} << 20}) {
        const auto byOpenSsl = [&](Bytes& bytes) { DecryptByOpenSsl(openSslKey.get(), bytes); };
        Bytes expected = Payload(nBytes);
        byOpenSsl(expected);
        const auto add = [&](const char* pName, const AES_FORM& form) {
            const auto byForm = [&form, &ctx](Bytes& bytes) { DecryptByForm(form, ctx, bytes); };
            Bytes bytes = Payload(nBytes);
            byForm(bytes);
            Register(pName, nBytes, byForm);
            return bytes == expected; // without the same answer the times say nothing
        };
        const AES_FORM* pInstructions = AesByInstructions();
        if (!add("table", g_aesByTable) || (pInstructions != nullptr && !add("instructions", *pInstructions))) {
            std::fprintf(stderr, "not the bytes that the baseline gives\n");
            return 1;
        }
        Register("baseline_openssl", nBytes, byOpenSsl);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
