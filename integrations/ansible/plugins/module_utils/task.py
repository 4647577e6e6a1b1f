"""What the actions of the collection have in common."""

from ansible.plugins.action import ActionBase

from ansible_collections.paravue.recorder.plugins.module_utils import control


class ControlTask(ActionBase):
    """An action that runs paravue-ctl on the controller, without a connection to the host."""

    TRANSFERS_FILES = False
    _requires_connection = False
    OWN_ARGUMENTS = {}

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        del tmp
        arguments = dict(control.CONNECTION_ARGUMENTS, **self.OWN_ARGUMENTS)
        _unused, params = self.validate_argument_spec(argument_spec=arguments)
        result['invocation'] = control.shown_invocation(params)
        try:
            params['address'] = control.checked_address(params['address'] or self.host_address(task_vars))
            result['invocation'] = control.shown_invocation(params)
            result.update(self.run_control(params))
        except control.ControlError as error:
            result.update(failed=True, msg=str(error))
        return result

    def host_address(self, task_vars):
        return str(task_vars.get('ansible_host') or task_vars['inventory_hostname'])

    def run_control(self, params):
        raise NotImplementedError

    @staticmethod
    def failure(ran):
        return {} if ran.is_done else {'failed': True, 'msg': ran.problem, 'exit_code': ran.exit_code}
