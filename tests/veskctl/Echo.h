/*
 * Defines, inside of a namespace, EchoXxx, a service that expects the sample of each in-argument and answers
 * the sample of each out-argument, and calls of all methods of its proxy with them. Included once per
 * interface, as <com/qv/detail/DeclareInterface.h> is.
 */

#define ECHO_CLASS(prefix) COM_QV_CAT(prefix, COM_QV_INTERFACE)

class ECHO_CLASS(Echo) : public com::qv::ECHO_CLASS(Bn) {
 public:
#define METHOD(code, name, ...) \
  Status name(COM_QV_PARAMS(__VA_ARGS__)) override { return answerSamples(COM_QV_NAMES(__VA_ARGS__)); }
#include COM_QV_METHODS
#undef METHOD
};

const InterfaceSample ECHO_CLASS(sampleOf) = {COM_QV_STRING(COM_QV_INTERFACE),
                                              [] { return sp<android::IBinder>(new ECHO_CLASS(Echo)); },
                                              {
#define METHOD(code, name, ...)                                                                          \
  [](const sp<android::IBinder>& binder) {                                                               \
    return callWithSamples(*com::qv::ECHO_CLASS(I)::asInterface(binder), &com::qv::ECHO_CLASS(I)::name); \
  },
#include COM_QV_METHODS
#undef METHOD
                                              }};

#undef ECHO_CLASS
#undef COM_QV_INTERFACE
#undef COM_QV_METHODS
