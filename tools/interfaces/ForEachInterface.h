/*
 * Includes the file ROWS_HEADER once for each interface, services first, with COM_QV_INTERFACE
 * defined as the interface's name. ROWS_HEADER must undefine COM_QV_INTERFACE. This file undefines
 * ROWS_HEADER.
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
