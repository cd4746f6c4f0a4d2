#include "tests/unit/errors/message_texts.h"

namespace zorvel {
namespace test {

const MessageText messageTexts[15] = {
    {0x4e0001, "ZORVEL_SEM_NAME_TOO_LONG", "sdd",
     "Cannot open semaphore '%s'. The name is %d characters long. Maximum name length is %d.",
     "セマフォ '%1' を開けられません。名前は %2 の文字長です。名前の最大長は %3 です。"},
    {0x4e0002, "ZORVEL_SEM_OPEN_FAILED", "ss", "Failed to open semaphore '%s'. \n System error: %s",
     "セマフォ '%1' を開けません。\nシステムエラー: %2"},
    {0x4e0003, "ZORVEL_SEM_CLOSE_FAILED", "ss", "Failed to close semaphore '%s'. \n System error: %s",
     "セマフォ '%1' を閉じることができません。\nシステムエラー: %2"},
    {0x4e0004, "ZORVEL_SEM_UNLINK_FAILED", "ss", "Failed to unlink (delete) semaphore '%s'. \n System error: %s",
     "セマフォ '%1' のリンクを解除 (削除) できません。\nシステムエラー: %2"},
    {0x4e0005, "ZORVEL_SEM_UNLINK_ZOMBIE_FAILED", "ss",
     "Failed to unlink (delete) zombie semaphore '%s'. \n System error: %s",
     "ゾンビ状態のセマフォ '%1' のリンクを解除 (削除) できません。\nシステムエラー: %2"},
    {0x4e0006, "ZORVEL_SEM_GETVALUE_FAILED", "ss", "Failed to get the value of semaphore '%s'. \n System error: %s",
     "セマフォ '%1' の値を取得できません。\nシステムエラー: %2"},
    {0x4e0007, "ZORVEL_SEM_GETVALUE_NOT_IMPLEMENTED", "ss",
     "sem_getvalue() is not implemented on this system. Could not get the value of semaphore '%s'. \n System error: %s",
     "sem_getvalue() はこのシステムに実装されていません。セマフォ '%1' の値を取得できません。\nシステムエラー: %2"},
    {0x4e0008, "ZORVEL_SEM_POST_FAILED", "ss", "Failed to release (increment) semaphore '%s'. \n System error: %s",
     "セマフォ '%1' を解放 (インクリメント) できません。\nシステムエラー: %2"},
    {0x4e0009, "ZORVEL_SEM_TRYWAIT_FAILED", "ss",
     "Failed to lock, with trywait protocol, semaphore '%s'. \n System error: %s",
     "trywait プロトコルでセマフォ '%1' をロックできません。\nシステムエラー: %2"},
    {0x4e000a, "ZORVEL_SEM_WAIT_FAILED", "ss", "Failed to lock semaphore '%s'. \n System error: %s",
     "セマフォ '%1' をロックできません。\nシステムエラー: %2"},
    {0x4e000b, "ZORVEL_SEM_WAIT_TIMED_OUT", "sd", "Wait on semaphore '%s' timed out after %d seconds.",
     "セマフォ '%1' の待機が %2 秒後にタイムアウトしました。"},
    {0x4e000c, "ZORVEL_SEM_WAIT_ABANDONED", "s",
     "Wait on semaphore '%s' abandonded because the owning process has terminated.",
     "自身のプロセスが終了したためセマフォ '%1' の待機が破棄されました。"},
    {0x4e000d, "ZORVEL_SEM_INVALID_RETURN_VALUE", "ssd",
     "Function '%s' on semaphore '%s' returned an invalid value %d.",
     "セマフォ '%2' で関数 '%1' は、無効な値 %3 を返しました。"},
    {0x4e000e, "ZORVEL_SEM_OP_UNSUPPORTED", "ss",
     "Operation '%s' on semaphore '%s' failed because this platform does not support that operation.",
     "セマフォ '%2' への処理 '%1' は、このプラットフォームではサポートされていないため失敗しました。"},
    {0x4e000f, "ZORVEL_SYS_CALL_FAILED", "ss", "Call to system function '%s' failed.\n System error: %s",
     "システム関数 '%1' を呼び出せません。\nシステムエラー: %2"},
};

std::vector<std::string> sampleArguments(const MessageText& message)
{
    std::vector<std::string> arguments;
    for (const char* type = message.types; *type; ++type)
        if (*type == 'd')
            arguments.push_back(std::to_string(1300 + arguments.size()));
        else
            arguments.push_back(arguments.empty() ? "alpha" : "beta");
    return arguments;
}

std::string fillIn(const char* text, const std::vector<std::string>& arguments)
{
    std::string result;
    std::size_t next = 0;
    for (; *text; ++text) {
        if (*text != '%') {
            result += *text;
            continue;
        }
        ++text;
        const bool isPosition = *text >= '1' && *text <= '9';
        result += arguments.at(isPosition ? static_cast<std::size_t>(*text - '1') : next++);
    }
    return result;
}

std::string sampleInEnglish(const MessageText& message)
{
    return fillIn(message.english, sampleArguments(message));
}

std::string sampleInJapanese(const MessageText& message)
{
    return fillIn(message.japanese, sampleArguments(message));
}

int emitSample(errors::MessageEmitter& emitter, std::ostream& stream, const MessageText& message)
{
    const std::uint32_t identifier = message.identifier;
    const std::string types = message.types;
    if (types == "s")
        return errors::emitMessage(emitter, stream, identifier, "alpha");
    if (types == "ss")
        return errors::emitMessage(emitter, stream, identifier, "alpha", "beta");
    if (types == "sd")
        return errors::emitMessage(emitter, stream, identifier, "alpha", 1301);
    if (types == "sdd")
        return errors::emitMessage(emitter, stream, identifier, "alpha", 1301, 1302);
    return errors::emitMessage(emitter, stream, identifier, "alpha", "beta", 1302);
}

}  // namespace test
}  // namespace zorvel
