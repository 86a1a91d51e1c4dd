#include "chat/PostedCall.h"

#include <QCoreApplication>
#include <QPointer>

PostedCall::PostedCall(std::function<void()> call) : QEvent(QEvent::User), call_(std::move(call)) {}

// Nothing but `PostCall` sends events to a receiver.
void CallReceiver::customEvent(QEvent* event) {
  if (const auto* const call = dynamic_cast<const PostedCall*>(event)) call->Run();
}

void PostCall(CallReceiver& receiver, std::function<void()> call) {
  QCoreApplication::postEvent(&receiver, new PostedCall(std::move(call)));
}

void PostCall(std::function<void()> call) {
  static QPointer<CallReceiver> receiver;
  if (receiver.isNull()) receiver = new CallReceiver(QCoreApplication::instance());
  PostCall(*receiver, std::move(call));
}
