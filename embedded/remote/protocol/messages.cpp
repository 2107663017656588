#include "embedded/remote/protocol/messages.h"

#include "embedded/remote/protocol/fields.h"

namespace embedded::remote {
namespace {

const json& Field(const json& message, const char* name) {
    if (!message.is_object()) throw ProtocolFailure("a message is no map");
    const auto found = message.find(name);
    if (found == message.end()) throw ProtocolFailure(std::string("\"") + name + "\" is missing");
    return *found;
}

bool Has(const json& message, const char* name) {
    return message.is_object() && message.contains(name);
}

template <typename Integer>
Integer NumberField(const json& message, const char* name) {
    const json::array_t list{Field(message, name)};
    const json holder(list);
    FieldReader reader(holder);
    return reader.Number<Integer>();
}

std::string WordField(const json& message, const char* name) {
    const json& field = Field(message, name);
    if (!field.is_string()) throw ProtocolFailure(std::string("\"") + name + "\" is no text");
    return field.get<std::string>();
}

const json& ListField(const json& message, const char* name) {
    const json& field = Field(message, name);
    if (!field.is_array()) throw ProtocolFailure(std::string("\"") + name + "\" is no list");
    return field;
}

}  // namespace

Hello OwnHello() {
    return {kLowestVersion, kHighestVersion, KRVCMD_RELEASE, {kReadsAhead}};
}

json ToMessage(const Hello& hello) {
    return {
        {"krvcmd", {hello.lowest, hello.highest}}, {"release", hello.release}, {"features", hello.features}};
}

Hello HelloFrom(const json& message) {
    Hello hello;
    FieldReader versions(Field(message, "krvcmd"));
    versions.Number(hello.lowest);
    versions.Number(hello.highest);
    hello.release = WordField(message, "release");
    for (const json& feature : ListField(message, "features")) {
        if (feature.is_string()) hello.features.push_back(feature.get<std::string>());
    }
    return hello;
}

json ToMessage(const Request& request) {
    json message = {{"n", request.number}, {"call", request.function}, {"with", request.arguments}};
    if (request.ahead > 0) message["ahead"] = request.ahead;
    if (!request.from.empty()) message["from"] = request.from;
    if (request.change > 0) message["change"] = request.change;
    return message;
}

Request RequestFrom(const json& message) {
    Request request;
    request.number = NumberField<uint64_t>(message, "n");
    request.function = WordField(message, "call");
    request.arguments = ListField(message, "with").get_ref<const json::array_t&>();
    if (Has(message, "ahead")) request.ahead = NumberField<uint32_t>(message, "ahead");
    if (Has(message, "from")) request.from = ListField(message, "from").get_ref<const json::array_t&>();
    if (Has(message, "change")) request.change = NumberField<uint64_t>(message, "change");
    return request;
}

json ToMessage(Answer answer) {
    json message = {{"n", answer.number}};
    if (answer.isWorking) {
        message["working"] = true;
        return message;
    }
    if (answer.failure.has_value()) {
        message["failure"] = json::array({answer.failure->code, BytesOf(answer.failure->text)});
    }
    message["result"] = std::move(answer.result);
    if (!answer.ahead.is_null()) message["ahead"] = std::move(answer.ahead);
    return message;
}

Answer AnswerFrom(json message) {
    Answer answer;
    answer.number = NumberField<uint64_t>(message, "n");
    answer.isWorking = Has(message, "working");
    if (answer.isWorking) return answer;
    if (Has(message, "failure")) {
        FieldReader failure(message["failure"]);
        answer.failure.emplace();
        failure.Number(answer.failure->code);
        answer.failure->text = failure.Text();
    }
    (void)ListField(message, "result");
    answer.result = std::move(message["result"]);
    if (Has(message, "ahead")) answer.ahead = std::move(message["ahead"]);
    return answer;
}

}  // namespace embedded::remote
