#pragma once

// What the adapters use of the dispatch queues, as Apple documents it.

typedef struct dispatch_queue_s* dispatch_queue_t;
typedef dispatch_queue_t dispatch_queue_main_t;
typedef void (*dispatch_function_t)(void* context);

extern "C" {

dispatch_queue_main_t dispatch_get_main_queue(void);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
}
