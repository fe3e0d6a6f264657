/*
 * Includes the file ROWS_HEADER once for each interface, with COM_QV_INTERFACE defined as its name.
 * The services come first. ROWS_HEADER undefines COM_QV_INTERFACE; this file undefines ROWS_HEADER.
 */

#define COM_QV_INTERFACE CallService
#include ROWS_HEADER
#define COM_QV_INTERFACE ConfigService
#include ROWS_HEADER
#define COM_QV_INTERFACE DatabaseService
#include ROWS_HEADER
#define COM_QV_INTERFACE MiscService
#include ROWS_HEADER
#define COM_QV_INTERFACE RelayService
#include ROWS_HEADER
#define COM_QV_INTERFACE ExternalKeyService
#include ROWS_HEADER
#define COM_QV_INTERFACE CallEventListener
#include ROWS_HEADER
#define COM_QV_INTERFACE MiscEventListener
#include ROWS_HEADER
#define COM_QV_INTERFACE AteEventListener
#include ROWS_HEADER

#undef ROWS_HEADER
