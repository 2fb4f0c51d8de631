// Preloaded into Qtractor where the kernel has no ALSA sequencer, without which its MIDI engine does not start.
#include <stddef.h>
#include <poll.h>
#include <errno.h>
static int dummy[4096];
#define Z(n) int n(){return 0;}
int snd_seq_open(void**h,const char*n,int s,int m){*h=dummy;return 0;}
Z(snd_seq_close) int snd_seq_client_id(){return 128;}
static int q,p; int snd_seq_alloc_queue(){return q++;} int snd_seq_alloc_named_queue(){return q++;} Z(snd_seq_free_queue) Z(snd_seq_control_queue)
int snd_seq_create_simple_port(){return p++;} Z(snd_seq_delete_simple_port) Z(snd_seq_drain_output) Z(snd_seq_drop_input) Z(snd_seq_drop_output)
int snd_seq_event_input(){return -EAGAIN;} Z(snd_seq_event_input_pending) Z(snd_seq_event_output) Z(snd_seq_event_output_direct)
Z(snd_seq_get_any_client_info) Z(snd_seq_get_any_port_info) Z(snd_seq_get_port_info) Z(snd_seq_get_queue_status) Z(snd_seq_get_queue_tempo)
static int fd[2]={-1,-1}; extern int pipe(int*);
int snd_seq_poll_descriptors_count(){return 1;}
int snd_seq_poll_descriptors(void*h,struct pollfd*f,unsigned n,short e){if(fd[0]<0)pipe(fd); f[0].fd=fd[0];f[0].events=POLLIN;return 1;}
int snd_seq_query_next_client(){return -ENOENT;} int snd_seq_query_next_port(){return -ENOENT;} int snd_seq_query_port_subscribers(){return -ENOENT;}
Z(snd_seq_remove_events) Z(snd_seq_set_client_name) Z(snd_seq_set_port_info) Z(snd_seq_set_queue_tempo) Z(snd_seq_set_queue_timer) Z(snd_seq_subscribe_port) Z(snd_seq_unsubscribe_port)
