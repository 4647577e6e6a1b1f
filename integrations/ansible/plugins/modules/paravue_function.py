"""The documentation; the action of this name does the work, on the controller."""

DOCUMENTATION = r'''
module: paravue_function
short_description: Run a function of a networked video recorder
description:
  - Runs a function, such as C(set_time_current), by its name. C(paravue-ctl --help) lists them.
  - All but C(get_report) count as a change. Check mode runs none of these.
extends_documentation_fragment: paravue.recorder.recorder
options:
  function:
    description: The name of the function.
    type: str
    required: true
  argument:
    description: What the function takes, if anything.
    type: str
  confirmed:
    description: Needed by functions that remove something for good, or that restart the recorder.
    type: bool
    default: false
'''

EXAMPLES = r'''
- name: Take the time of the controller
  paravue.recorder.paravue_function:
    password: "{{ recorder_password }}"
    function: set_time_current

- name: Restart
  paravue.recorder.paravue_function:
    password: "{{ recorder_password }}"
    function: soft_reboot
    confirmed: true
'''

RETURN = r'''
answer:
  description: What the recorder has answered besides "OK"; mostly empty.
  type: str
  returned: always
report:
  description: The report of the recorder.
  type: str
  returned: for get_report
exit_code:
  description: That of C(paravue-ctl).
  type: int
  returned: failure
'''
