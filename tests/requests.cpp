// Messages for handler tests.
#include "tests/requests.h"

namespace kobd::test
{
ExactMessage::ExactMessage(std::string_view payload) : block_(new char[sizeof(MessageHeader) + payload.size()]())
{
    memset(block_.get(), 0x5A, sizeof(MessageHeader));
    Header()->length = static_cast<uint16_t>(payload.size());
    if (!payload.empty()) memcpy(block_.get() + sizeof(MessageHeader), payload.data(), payload.size());
}

Answer Ask(int (*handler)(MessageHeader*), std::string_view payload)
{
    ExactMessage message(payload);
    platform.reply.clear();
    Answer answer;
    answer.returned = handler(message.Header());
    if (platform.reply.size() < sizeof(MessageHeader)) return answer;
    answer.payload = platform.reply.size() - sizeof(MessageHeader);
    TakeReply(std::string_view(platform.reply).substr(sizeof(MessageHeader)), &answer.result, &answer.texts);
    return answer;
}
}  // namespace kobd::test
