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
    TlvReader reader(std::string_view(platform.reply).substr(sizeof(MessageHeader)));
    while (const auto item = reader.Next())
    {
        if (item->tag == kTagResult)
            answer.result = item->Int().value_or(-1);
        else if (item->tag == kTagRowIndex)
            answer.texts.push_back(std::to_string(item->Int().value_or(-1)));
        else
            answer.texts.emplace_back(item->Text().value_or("no text"));
    }
    return answer;
}
}  // namespace kobd::test
