#include "ZQ/serial/ZQResponseClass.h"

namespace ZQ {

void _ZQResponseClass_tag::OnClassClose(void*) {}
void _ZQResponseClass_tag::OnClassCreate(void*) {}
void _ZQResponseClass_tag::OnClassDestroy(void*) {}
void _ZQResponseClass_tag::OnClassDone(void*) {}
void _ZQResponseClass_tag::OnClassError(void*) {}
void _ZQResponseClass_tag::OnClassFail(void*) {}
void _ZQResponseClass_tag::OnClassFault(void*) {}
void _ZQResponseClass_tag::OnClassFinish(void*) {}
void _ZQResponseClass_tag::OnClassInit(void*) {}
void _ZQResponseClass_tag::OnClassProc(void*) {}
void _ZQResponseClass_tag::OnClassRecv(void*) {}
void _ZQResponseClass_tag::OnClassSend(void*) {}
void _ZQResponseClass_tag::OnClassSuccess(void*) {}

} // namespace ZQ
